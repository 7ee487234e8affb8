#pragma once

#include <QObject>

class QWidget;

// Keeps boxes and dialogs usable while the call window is up, which stays above the windows of all programs:
// a dialog opened meanwhile appears in front of it. While a box is open, the box alone stays on top and the
// call window sits right above the main window; the window manager's own layers then keep that order whatever
// is clicked. A child of the call window.
class FrontRow : public QObject {
    Q_OBJECT

public:
    explicit FrontRow(QWidget& callWindow);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ArrangeLater();
    void Arrange();
    void LetDown();

    QWidget& m_callWindow;
};
