#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
struct IStringSource;

// The small window that says what is being waited for, and offers to give up where that is safe. It never
// takes the keyboard, so that nothing that is typed reaches its button. Object name "waitSign", its button
// "cmdGiveUp", its lines "lblWaiting" and "lblHint".
class WaitSign : public QWidget {
    Q_OBJECT

public:
    // Over the window that waits, or null. The strings must outlive it.
    WaitSign(const IStringSource& strings, QWidget* owner);

    void ShowText(const QString& text);
    // Says whether giving up is safe; `offered`: the button can be pressed.
    void ShowGivingUp(bool safe, bool offered);
    void ShowOver();

Q_SIGNALS:
    void GivenUp();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    const IStringSource& m_strings;
    QLabel* m_text;
    QLabel* m_hint;
    QPushButton* m_giveUp;
};
