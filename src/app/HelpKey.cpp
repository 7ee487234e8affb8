#include "app/HelpKey.h"

#include "admin/HelpGuide.h"
#include "core/widgets/PlainKey.h"

#include <QApplication>
#include <QMessageBox>
#include <QTabBar>

namespace {

// The name under which the guide knows a widget's window; for the main window with its tab.
QString NameOf(const QWidget& window)
{
    const auto* tabs = window.findChild<QTabBar*>(QStringLiteral("tsMain"));
    const QString tab = tabs ? tabs->tabData(tabs->currentIndex()).toString() : QString();
    return tab.isEmpty() ? window.objectName() : window.objectName() + QLatin1Char('/') + tab;
}

} // namespace

HelpKey::HelpKey(std::function<void(const QString& page)> show) : m_show(std::move(show))
{
    qApp->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject* watched, QEvent* event)
{
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() != QEvent::KeyPress || !widget || !IsPlain(*static_cast<QKeyEvent*>(event), Qt::Key_F1))
        return QObject::eventFilter(watched, event);
    // A box must be answered first: it blocks the guide's window.
    if (!qobject_cast<QMessageBox*>(widget->window()))
        m_show(HelpPageFor(NameOf(*widget->window())));
    return true;
}
