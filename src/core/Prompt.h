#pragma once

#include <QString>

struct IStringSource;

// The only way the system shows boxes. All texts are already formatted. The asking operations return true for
// the agreeing answer; every operation returns when the box is closed.
struct IPrompt {
    virtual ~IPrompt() = default;

    virtual bool AskQuestion(const QString& text) = 0;
    virtual bool AskConfirmation(const QString& text) = 0;
    virtual void ShowWarning(const QString& text) = 0;
    virtual void ShowError(const QString& text) = 0;
    virtual void ShowInfo(const QString& text) = 0;
    // Caption of all boxes.
    virtual void SetAppName(const QString& name) = 0;
};

// Boxes of the desktop, modal to the active window. Each has the object name "promptBox", its buttons
// "cmdYes", "cmdNo" and "cmdOk". A question offers Yes as the default button, a confirmation No. Texts are
// shown literally, never as markup.
class Prompt : public IPrompt {
public:
    explicit Prompt(const IStringSource& strings) : m_strings(strings) {}

    bool AskQuestion(const QString& text) override;
    bool AskConfirmation(const QString& text) override;
    void ShowWarning(const QString& text) override;
    void ShowError(const QString& text) override;
    void ShowInfo(const QString& text) override;
    void SetAppName(const QString& name) override { m_appName = name; }

private:
    const IStringSource& m_strings; // captions of the buttons
    QString m_appName;
};
