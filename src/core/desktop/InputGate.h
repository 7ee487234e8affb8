#pragma once

#include <QObject>
#include <QPointer>
#include <memory>
#include <vector>

class QKeyEvent;
class QWidget;
class QWindow;

// Keeps input from the windows while one of them waits in the middle of an operation. The window of a radio
// call stays usable, and so does a box that opens meanwhile. It is no modal window: nothing that opens later
// call stays usable, and so does a box that opens meanwhile. It is no modal window: nothing that opens later
// becomes its child, and the keyboard stays where it is. Whoever watches for keys of the whole program, such
// as the one that leads to a call, is made later and sees them first.
class InputGate : public QObject {
    Q_OBJECT

public:
    InputGate();
    ~InputGate() override;

    void Close();
    // This window is to be usable while the gate is closed.
    void Let(QWidget& window);
    // Text that is typed into a field is kept for it until this is called. Other keys are lost: they would
    // act after a wait of any length.
    void StopKeepingText() { m_keepsText = false; }
    // Whether windows may be closed, as the operation itself does between two waits.
    void LetWindowsClose(bool let) { m_letsClose = let; }
    void Open();
    bool IsClosed() const { return m_closed; }

Q_SIGNALS:
    // In a window that is kept from input.
    void EscapePressed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool Passes(const QWidget* window) const;
    void TakeKey(const QWidget* window, const QKeyEvent& event);

    struct Kept {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
    };

    bool m_closed = false;
    bool m_keepsText = false;
    bool m_letsClose = false;
    bool m_pressed = false; // a mouse button, since it was closed
    std::vector<QPointer<QWidget>> m_usable;
    std::vector<Kept> m_kept;
};
