#include "core/desktop/XDisplay.h"

#include <QGuiApplication>

_XDisplay* XDisplay()
{
    // Others have such a connection, too, but no windows there.
    if (!qApp || QGuiApplication::platformName() != QLatin1String("xcb"))
        return nullptr;
    const auto* native = qApp->nativeInterface<QNativeInterface::QX11Application>();
    return native ? native->display() : nullptr;
}
