#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <functional>

class QAbstractItemView;
class QKeyEvent;
class QPoint;

// What the operator does on a list that addresses messages: calls the chosen line, reloads the list, asks for
// the messaging menu. Enter and F5 count without Shift, Ctrl and Alt. The menu is asked for when the right
// button is released, or by the keyboard.
//
// A gesture acts on what it hits, whatever has been highlighted since the button went down: that item is made
// current, the selection is made to include it, and Chosen comes before the call or the menu. A gesture that
// hits nothing does nothing, nor does a double click whose two halves hit different items.
class ListGestures : public QObject {
    Q_OBJECT

public:
    // What a double click of the left button means: the call, or only what the view itself does.
    enum class DoubleClick { Calls, Unfolds };

    // Becomes a child of the list.
    explicit ListGestures(QAbstractItemView& list, DoubleClick doubleClick = DoubleClick::Calls);

    // Asked when Enter is pressed. While it says no, Enter chooses without calling.
    std::function<bool()> mayCall = [] { return true; };

Q_SIGNALS:
    // The operator means the selected items.
    void Chosen();
    void CallRequested();
    void ReloadRequested();
    // Place on the screen.
    void MenuRequested(const QPoint& place);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool HandleKey(const QKeyEvent& key);
    bool Choose(const QModelIndex& hit);
    QPoint MenuPlaceOfSelection() const;

    QAbstractItemView& m_list;
    DoubleClick m_doubleClick;
    QPersistentModelIndex m_pressed; // what the last press of a button hit
};
