#include "tour/TourHand.h"

#include "core/texts/Errors.h"
#include "tour/TourControls.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QRadioButton>
#include <algorithm>

namespace {

constexpr int MarkPlace = 10; // pixels from the left

[[noreturn]] void Fail(const QString& what)
{
    throw Error(ErrorCode::General, what);
}

QWidget* Usable(const QString& name)
{
    QWidget* widget = TourControls::Find(name);
    if (!widget)
        Fail(QStringLiteral("%1 is not there").arg(name));
    if (!widget->isVisible())
        Fail(QStringLiteral("%1 is hidden").arg(name));
    if (!widget->isEnabled())
        Fail(QStringLiteral("%1 is disabled").arg(name));
    return widget;
}

// Where the pointer is put.
struct Spot {
    QWidget* control; // gets the focus
    QWidget* widget;  // gets the mouse
    QPoint position;
};

Spot ItemSpot(const QString& place)
{
    QAbstractItemView* view = TourControls::View(place);
    const QModelIndex item = TourControls::Item(place);
    if (!item.isValid())
        Fail(QStringLiteral("no item %1").arg(place));
    view->scrollTo(item);
    const QRect seen = view->visualRect(item).intersected(view->viewport()->rect());
    if (seen.isEmpty())
        Fail(QStringLiteral("%1 cannot be seen").arg(place));
    return {Usable(view->objectName()), view->viewport(), seen.center()};
}

Spot SpotOf(const QString& place)
{
    if (TourControls::IsItem(place))
        return ItemSpot(place);
    QWidget* widget = Usable(place);
    // Radio buttons and check boxes react to their indicator and text, which begin at the left.
    const bool marks = qobject_cast<QRadioButton*>(widget) || qobject_cast<QCheckBox*>(widget);
    const QPoint centre = widget->rect().center();
    return {widget, widget, marks ? QPoint(std::min(MarkPlace, centre.x()), centre.y()) : centre};
}

void SendMouse(QWidget* widget, QEvent::Type type, const QPoint& position)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, QPointF(position), QPointF(widget->mapToGlobal(position)), button, held,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

void ClickAt(QWidget* widget, const QPoint& position)
{
    SendMouse(widget, QEvent::MouseButtonPress, position);
    SendMouse(widget, QEvent::MouseButtonRelease, position);
}

Spot Click(const QString& place)
{
    const Spot spot = SpotOf(place);
    spot.control->setFocus(Qt::MouseFocusReason);
    ClickAt(spot.widget, spot.position);
    return spot;
}

void DoubleClick(const QString& place)
{
    const Spot spot = Click(place);
    SendMouse(spot.widget, QEvent::MouseButtonDblClick, spot.position);
    SendMouse(spot.widget, QEvent::MouseButtonRelease, spot.position);
}

// Leaves the button down.
Spot DragOver(const QString& place, const QString& target)
{
    const Spot from = SpotOf(place);
    const Spot to = SpotOf(target);
    from.control->setFocus(Qt::MouseFocusReason);
    SendMouse(from.widget, QEvent::MouseButtonPress, from.position);
    SendMouse(from.widget, QEvent::MouseMove, (from.position + to.position) / 2);
    SendMouse(from.widget, QEvent::MouseMove, to.position);
    return to;
}

void DragTo(const QString& place, const QString& target)
{
    const Spot spot = DragOver(place, target);
    SendMouse(spot.widget, QEvent::MouseButtonRelease, spot.position);
}

void SendKey(QWidget* widget, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(widget, &release);
}

void SendText(QWidget* widget, const QString& text)
{
    for (const QChar character : text)
        SendKey(widget, 0, Qt::NoModifier, QString(character));
}

void Put(QWidget* widget, const QString& text)
{
    if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        if (!combo->lineEdit())
            Fail(QStringLiteral("%1 takes no text").arg(combo->objectName()));
        widget = combo->lineEdit();
    }
    widget->setFocus(Qt::MouseFocusReason);
    SendKey(widget, Qt::Key_A, Qt::ControlModifier, {});
    SendKey(widget, Qt::Key_Delete, Qt::NoModifier, {});
    SendText(widget, text);
}

// Types the beginning of an entry, which is thereby found.
void Choose(const QString& text, const QString& name)
{
    QWidget* widget = Usable(name);
    widget->setFocus(Qt::MouseFocusReason);
    // Forgets what was typed just before, as a pause would.
    const auto* combo = qobject_cast<QComboBox*>(widget);
    if (auto* list = combo ? combo->view() : qobject_cast<QAbstractItemView*>(widget))
        list->keyboardSearch(QString());
    SendText(widget, text);
}

void Press(QWidget* widget, const QString& name)
{
    const QKeyCombination keys = QKeySequence::fromString(name)[0];
    widget->setFocus(Qt::MouseFocusReason);
    SendKey(widget, keys.key(), keys.keyboardModifiers(), {});
}

// Edits the name of an item in its place: F2, the text, Enter.
void Rename(const QString& place, const QString& name)
{
    QWidget* view = Click(place).control;
    Press(view, QStringLiteral("f2"));
    auto* editor = view->findChild<QLineEdit*>();
    if (!editor)
        Fail(QStringLiteral("no editor in %1").arg(place));
    Put(editor, name);
    Press(editor, QStringLiteral("return"));
}

QAction* Available(const QWidget* bar, const QString& name)
{
    for (QAction* action : bar->actions()) {
        const bool named =
            action->objectName() == name || (action->menu() && action->menu()->objectName() == name);
        if (named && action->isVisible() && action->isEnabled())
            return action;
    }
    Fail(QStringLiteral("%1 is not available").arg(name));
}

// Opens a menu of the main window and clicks an item.
void Menu(const QString& menuName, const QString& itemName)
{
    const auto* window = qobject_cast<QMainWindow*>(TourControls::Find(QStringLiteral("winMain")));
    if (!window)
        Fail(QStringLiteral("there is no main window"));
    QMenuBar* bar = window->menuBar();
    QAction* title = Available(bar, menuName);
    QMenu* menu = title->menu();
    ClickAt(bar, bar->actionGeometry(title).center());
    if (!menu->isVisible())
        Fail(QStringLiteral("menu %1 did not open").arg(menuName));
    ClickAt(menu, menu->actionGeometry(Available(menu, itemName)).center());
}

// Clicks the agreeing or the refusing button of a message box.
void Answer(bool agree)
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box)
        Fail(QStringLiteral("no message box is open"));
    for (QAbstractButton* button : box->buttons()) {
        const QMessageBox::ButtonRole role = box->buttonRole(button);
        const bool agreeing = role == QMessageBox::YesRole || role == QMessageBox::AcceptRole;
        if (agreeing == agree) {
            ClickAt(button, button->rect().center());
            return;
        }
    }
    Fail(QStringLiteral("the box has no such button"));
}

} // namespace

std::vector<TourWord> TourHandWords()
{
    using Values = const QStringList&;
    return {
        {QStringLiteral("click PLACE"), [](Values v) { Click(v[0]); }},
        {QStringLiteral("double click PLACE"), [](Values v) { DoubleClick(v[0]); }},
        {QStringLiteral("hold NAME"),
         [](Values v) { SendMouse(Usable(v[0]), QEvent::MouseButtonPress, SpotOf(v[0]).position); }},
        {QStringLiteral("release NAME"),
         [](Values v) { SendMouse(Usable(v[0]), QEvent::MouseButtonRelease, SpotOf(v[0]).position); }},
        {QStringLiteral("drag PLACE to PLACE"), [](Values v) { DragTo(v[0], v[1]); }},
        {QStringLiteral("drag PLACE over PLACE"), [](Values v) { DragOver(v[0], v[1]); }},
        {QStringLiteral("put TEXT into NAME"), [](Values v) { Put(Usable(v[1]), v[0]); }},
        {QStringLiteral("rename PLACE to TEXT"), [](Values v) { Rename(v[0], v[1]); }},
        {QStringLiteral("choose TEXT in NAME"), [](Values v) { Choose(v[0], v[1]); }},
        {QStringLiteral("press KEY in NAME"), [](Values v) { Press(Usable(v[1]), v[0]); }},
        {QStringLiteral("menu NAME > NAME"), [](Values v) { Menu(v[0], v[1]); }},
        {QStringLiteral("answer yes"), [](Values) { Answer(true); }},
        {QStringLiteral("answer no"), [](Values) { Answer(false); }},
    };
}
