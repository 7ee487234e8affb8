#include "core/widgets/Icons.h"

#include <QFile>
#include <QWidget>
#include <algorithm>

QIcon LoadIcon(const QString& key)
{
    const QString file = QStringLiteral(":/veltorkyn/icons/%1.svg").arg(key);
    return key.isEmpty() || !QFile::exists(file) ? QIcon() : QIcon(file);
}

QSize IconSize(const QWidget& widget)
{
    const int edge = std::max(20, widget.fontMetrics().height() + 4);
    return {edge, edge};
}

QSize SmallIconSize(const QWidget& widget)
{
    const int edge = std::max(16, widget.fontMetrics().height());
    return {edge, edge};
}
