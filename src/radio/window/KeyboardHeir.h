#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>

class QWidget;

// When another window of the program goes while the call window is up, the desktop gives the keyboard to the
// call window, where the next letter would transmit. It is passed on to the main window, and until then no
// key but a function key means anything. Only a window that took the keyboard from the call window gives it
// back. A child of the call window.
class KeyboardHeir : public QObject {
    Q_OBJECT

public:
    explicit KeyboardHeir(QWidget& callWindow);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Follow(QWindow* window);
    void PassOn();

    QWidget& m_callWindow;
    QPointer<QWindow> m_last;     // had the keyboard last
    QPointer<QWindow> m_fromCall; // took it from the call window
    bool m_anyLast = false;
    bool m_inherited = false; // the call window has it, and nobody asked for that
};
