#pragma once

#include <QObject>

class QWidget;

// Keeps boxes and dialogs usable while the call window, which stays above all windows, is up: a dialog that
// is opened then stands in front of it, and so does every box, also one that was there before. A child of the
// call window.
class FrontRow : public QObject {
    Q_OBJECT

public:
    explicit FrontRow(QWidget& callWindow);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Later();
    void RaiseBoxes();
    void LetDown();

    QWidget& m_callWindow;
    bool m_waiting = false;
};
