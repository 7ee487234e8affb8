#pragma once

#include <QDialog>
#include <memory>

class QLineEdit;
struct IDbSession;
struct IPrompt;
struct IStringSource;
namespace Ui {
class frmPassword;
}

// Lets the logged-on operator change their own password. Created once and hidden between uses. Show it with
// exec().
class frmPassword : public QDialog {
    Q_OBJECT

public:
    // All must outlive the dialog.
    frmPassword(IDbSession& session, IPrompt& prompt, const IStringSource& strings,
                QWidget* parent = nullptr);
    ~frmPassword() override;

Q_SIGNALS:
    // With the text for the status bar.
    void PasswordChanged(const QString& message);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Change();
    // Empties the fields from `first` on and puts the focus there.
    void Empty(int first);

    IDbSession& m_session;
    IPrompt& m_prompt;
    const IStringSource& m_strings;
    std::unique_ptr<Ui::frmPassword> m_ui;
};
