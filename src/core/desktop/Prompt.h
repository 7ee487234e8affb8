#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QString>

struct Clock;
struct IStringSource;

// The only way the system shows boxes. Texts come already formatted. The operations that ask return true for
// consent; every operation returns when the box is closed.
struct IPrompt {
    virtual ~IPrompt() = default;

    virtual bool AskQuestion(const QString& text) = 0;
    virtual bool AskConfirmation(const QString& text) = 0;
    // A question where neither answer leaves everything as it is.
    virtual bool AskChoice(const QString& text) = 0;
    virtual void ShowWarning(const QString& text) = 0;
    virtual void ShowError(const QString& text) = 0;
    virtual void ShowInfo(const QString& text) = 0;
    // Caption of all boxes.
    virtual void SetAppName(const QString& name) = 0;
};

// Desktop boxes, modal to the active window. Each has the object name "promptBox", its buttons "cmdYes",
// "cmdNo" and "cmdOk". A question offers Yes as the default button, a confirmation No; Esc and the close
// button decline both, but do nothing to a choice. Texts are shown literally, never as markup. Keys pressed
// before a box could be seen do not answer it.
class Prompt : public IPrompt {
public:
    Prompt(const IStringSource& strings, const Clock& clock) : m_strings(strings), m_clock(clock) {}

    bool AskQuestion(const QString& text) override;
    bool AskConfirmation(const QString& text) override;
    bool AskChoice(const QString& text) override;
    void ShowWarning(const QString& text) override;
    void ShowError(const QString& text) override;
    void ShowInfo(const QString& text) override;
    void SetAppName(const QString& name) override { m_appName = name; }

private:
    enum class Kind { Question, Confirmation, Choice };

    QPointer<QMessageBox> MakeBox(QMessageBox::Icon icon, const QString& text) const;
    bool Ask(Kind kind, const QString& text) const;
    void Show(QMessageBox::Icon icon, const QString& text) const;

    const IStringSource& m_strings; // captions of the buttons
    const Clock& m_clock;
    QString m_appName;
};
