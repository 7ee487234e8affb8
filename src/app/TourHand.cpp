#include "app/TourHand.h"

#include "core/Errors.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <algorithm>

namespace {

constexpr int MarkPlace = 10; // pixels from the left

[[noreturn]] void Fail(const QString& what)
{
    throw Error(ErrorCode::General, what);
}

QWidgetList VisibleWindows()
{
    QWidgetList windows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            windows.append(window);
    }
    QWidget* first = QApplication::activeModalWidget();
    if (!first)
        first = QApplication::activeWindow();
    if (first && windows.removeOne(first))
        windows.prepend(first);
    return windows;
}

QWidget* Usable(const QString& name)
{
    QWidget* widget = TourHand::Find(name);
    if (!widget)
        Fail(QStringLiteral("%1 is not there").arg(name));
    if (!widget->isVisible())
        Fail(QStringLiteral("%1 is hidden").arg(name));
    if (!widget->isEnabled())
        Fail(QStringLiteral("%1 is disabled").arg(name));
    return widget;
}

void SendMouse(QWidget* widget, QEvent::Type type, const QPoint& position)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, QPointF(position), QPointF(widget->mapToGlobal(position)), Qt::LeftButton, held,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

void ClickAt(QWidget* widget, const QPoint& position)
{
    SendMouse(widget, QEvent::MouseButtonPress, position);
    SendMouse(widget, QEvent::MouseButtonRelease, position);
}

void SendKey(QWidget* widget, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(widget, &release);
}

QAction* Item(QMenu* menu, const QString& name)
{
    for (QAction* action : menu->actions()) {
        if (action->objectName() == name)
            return action;
    }
    return nullptr;
}

} // namespace

QWidget* TourHand::Find(const QString& name)
{
    QWidget* hidden = nullptr;
    for (QWidget* window : VisibleWindows()) {
        if (window->objectName() == name)
            return window;
        for (QWidget* widget : window->findChildren<QWidget*>(name)) {
            if (widget->isVisible())
                return widget;
            hidden = widget;
        }
    }
    return hidden;
}

bool TourHand::IsVisible(const QString& name)
{
    const QWidget* widget = Find(name);
    return widget && widget->isVisible();
}

void TourHand::Click(const QString& name)
{
    QWidget* widget = Usable(name);
    widget->setFocus(Qt::MouseFocusReason);
    // Radio buttons and check boxes react to their indicator and text, which begin at the left.
    const bool marks = qobject_cast<QRadioButton*>(widget) || qobject_cast<QCheckBox*>(widget);
    const QPoint centre = widget->rect().center();
    ClickAt(widget, marks ? QPoint(std::min(MarkPlace, centre.x()), centre.y()) : centre);
}

void TourHand::Press(const QString& name)
{
    QWidget* widget = Usable(name);
    SendMouse(widget, QEvent::MouseButtonPress, widget->rect().center());
}

void TourHand::Release(const QString& name)
{
    QWidget* widget = Usable(name);
    SendMouse(widget, QEvent::MouseButtonRelease, widget->rect().center());
}

void TourHand::Type(const QString& name, const QString& text)
{
    QWidget* widget = Usable(name);
    if (auto* combo = qobject_cast<QComboBox*>(widget)) {
        if (!combo->lineEdit())
            Fail(QStringLiteral("%1 takes no text").arg(name));
        widget = combo->lineEdit();
    }
    widget->setFocus(Qt::MouseFocusReason);
    SendKey(widget, Qt::Key_A, Qt::ControlModifier, {});
    SendKey(widget, Qt::Key_Delete, Qt::NoModifier, {});
    for (const QChar character : text)
        SendKey(widget, 0, Qt::NoModifier, QString(character));
}

void TourHand::Choose(const QString& name, const QString& text)
{
    QWidget* widget = Usable(name);
    widget->setFocus(Qt::MouseFocusReason);
    // Forgets what was typed just before, as a pause would.
    const auto* combo = qobject_cast<QComboBox*>(widget);
    if (auto* list = combo ? combo->view() : qobject_cast<QAbstractItemView*>(widget))
        list->keyboardSearch(QString());
    for (const QChar character : text)
        SendKey(widget, 0, Qt::NoModifier, QString(character));
}

void TourHand::Key(const QString& name, int key, Qt::KeyboardModifiers modifiers)
{
    QWidget* widget = Usable(name);
    widget->setFocus(Qt::MouseFocusReason);
    SendKey(widget, key, modifiers, {});
}

void TourHand::Menu(const QString& menuName, const QString& itemName)
{
    const auto* window = qobject_cast<QMainWindow*>(Find(QStringLiteral("winMain")));
    if (!window)
        Fail(QStringLiteral("there is no main window"));
    QMenuBar* bar = window->menuBar();
    for (QAction* title : bar->actions()) {
        QMenu* menu = title->menu();
        if (!menu || (menu->objectName() != menuName && title->objectName() != menuName))
            continue;
        if (!title->isVisible() || !title->isEnabled())
            Fail(QStringLiteral("menu %1 is not available").arg(menuName));
        QAction* item = Item(menu, itemName);
        if (!item || !item->isVisible() || !item->isEnabled())
            Fail(QStringLiteral("%1 is not available").arg(itemName));
        ClickAt(bar, bar->actionGeometry(title).center());
        if (!menu->isVisible())
            Fail(QStringLiteral("menu %1 did not open").arg(menuName));
        ClickAt(menu, menu->actionGeometry(item).center());
        return;
    }
    Fail(QStringLiteral("menu %1 is not there").arg(menuName));
}

void TourHand::AnswerBox(bool agree)
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

QString TourHand::TextOf(const QString& name)
{
    QWidget* widget = Find(name);
    if (!widget)
        return {};
    if (auto* label = qobject_cast<QLabel*>(widget))
        return label->text();
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        return button->text();
    if (auto* edit = qobject_cast<QLineEdit*>(widget))
        return edit->text();
    if (auto* combo = qobject_cast<QComboBox*>(widget))
        return combo->currentText();
    if (auto* text = qobject_cast<QPlainTextEdit*>(widget))
        return text->toPlainText();
    if (auto* box = qobject_cast<QMessageBox*>(widget))
        return box->text();
    return widget->windowTitle();
}
