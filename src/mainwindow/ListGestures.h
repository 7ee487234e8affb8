#pragma once

#include <QObject>

class QAbstractItemView;
class QKeyEvent;
class QPoint;

// What the operator does on a list that addresses messages: calls the chosen line, reloads the list, asks for
// the messaging menu. Enter and F5 count without Shift, Ctrl and Alt. The menu is asked for when the right
// button is released, or by the keyboard.
class ListGestures : public QObject {
    Q_OBJECT

public:
    // What a double click of the left button means: the call, or nothing more than the view's own.
    enum class DoubleClick { Calls, Unfolds };

    // Becomes a child of the list.
    explicit ListGestures(QAbstractItemView& list, DoubleClick doubleClick = DoubleClick::Calls);

Q_SIGNALS:
    void CallRequested();
    void ReloadRequested();
    // Place on the screen.
    void MenuRequested(const QPoint& place);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool HandleKey(const QKeyEvent& key);
    QPoint MenuPlaceOfSelection() const;

    QAbstractItemView& m_list;
    DoubleClick m_doubleClick;
};
