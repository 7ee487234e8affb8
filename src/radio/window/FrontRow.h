#pragma once

#include <QObject>

class QWidget;

// Keeps boxes and dialogs usable while the call window is up, which stays above the windows of all programs:
// a dialog that is opened then is opened in front of it. As long as a box is open the box has that place
// alone, and the call window the one right above the main window: so the layers of the window manager hold
// the order, whatever is clicked. A child of the call window.
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
