#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>

class LogonPause;
struct IStringSource;
namespace Ui {
class frmLogon;
}

// Asks for user name and password until an attempt succeeds. A wrong password is reported inside the dialog;
// after several of them, the wait before the next attempt grows and is counted down.
class frmLogon : public QDialog {
    Q_OBJECT

public:
    enum class Outcome {
        LoggedOn,      // the dialog is accepted
        WrongPassword, // the dialog asks again
        Failed,        // the dialog is rejected; the caller knows why
    };
    // Must not raise, since it is called from an event.
    using Attempt = std::function<Outcome(const QString& userName, const QString& password)>;

    // `pause` outlives the dialog, so that closing and reopening it does not shorten the wait.
    frmLogon(const IStringSource& strings, LogonPause& pause, Attempt attempt, QWidget* parent = nullptr);
    ~frmLogon() override;

    // Shown in the caption.
    void SetAppName(const QString& name);
    // Shown while no refusal is.
    void SetNote(const QString& text) { ShowMessage(text); }
    void SetUserName(const QString& name);
    // While an attempt migrates the database: says so and how far it is, and keeps the windows painted.
    // Nothing that the operator does arrives before the attempt has ended.
    void ShowMigration(const QString& database, int percent);

public Q_SLOTS:
    // Checks the clock: shows how long to wait, or allows the next attempt. Called several times a second
    // during the wait.
    void Tick();

private:
    void TryLogon();
    void ShowMessage(const QString& text);

    const IStringSource& m_strings;
    LogonPause& m_pause;
    Attempt m_attempt;
    QString m_refusal; // what the message line says beside the countdown
    QTimer m_timer;
    QElapsedTimer m_painted;
    std::unique_ptr<Ui::frmLogon> m_ui;
};
