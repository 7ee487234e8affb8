#include "core/desktop/WindowRole.h"

#include <QAccessibleWidget>

// Asked for each class of an object, the innermost first; boxes, lists and the like are answered by Qt
// before.
static QAccessibleInterface* NewWindow(const QString& className, QObject* object)
{
    auto* widget = className == QLatin1String("QWidget") ? qobject_cast<QWidget*>(object) : nullptr;
    if (!widget || (widget->windowType() != Qt::Window && widget->windowType() != Qt::Dialog))
        return nullptr;
    return new QAccessibleWidget(widget, QAccessible::Window);
}

void TellWindowRoles()
{
    QAccessible::installFactory(NewWindow);
}
