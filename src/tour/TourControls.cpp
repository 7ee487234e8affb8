#include "tour/TourControls.h"

#include "core/texts/Errors.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QRegularExpression>

namespace {

QWidgetList VisibleWindows()
{
    QWidgetList windows;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible())
            windows.append(window);
    QWidget* first = QApplication::activeModalWidget();
    if (!first)
        first = QApplication::activeWindow();
    if (first && windows.removeOne(first))
        windows.prepend(first);
    return windows;
}

QString ShownBy(const QModelIndex& item)
{
    QStringList columns;
    for (int column = 0; column < item.model()->columnCount(item.parent()); ++column)
        columns.append(item.siblingAtColumn(column).data().toString());
    return columns.join(QLatin1Char(' '));
}

QModelIndex Below(const QAbstractItemModel& model, const QModelIndex& parent, const QStringList& path)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex node = model.index(row, 0, parent);
        if (TourControls::IsLike(ShownBy(node), path.first() + QLatin1Char('*'))) {
            const QModelIndex found = path.size() == 1 ? node : Below(model, node, path.mid(1));
            if (found.isValid())
                return found;
        }
        if (const QModelIndex found = Below(model, node, path); found.isValid())
            return found;
    }
    return {};
}

} // namespace

QWidget* TourControls::Find(const QString& name)
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

bool TourControls::IsItem(const QString& place)
{
    return place.contains(QLatin1Char('/'));
}

QAbstractItemView* TourControls::View(const QString& place)
{
    const QString name = place.section(QLatin1Char('/'), 0, 0);
    auto* view = qobject_cast<QAbstractItemView*>(Find(name));
    if (!view || !view->isVisible())
        throw Error(ErrorCode::General, QStringLiteral("no list %1").arg(name));
    return view;
}

QModelIndex TourControls::Item(const QString& place)
{
    const QAbstractItemModel& model = *View(place)->model();
    const QStringList path = place.split(QLatin1Char('/')).mid(1);
    if (path.first().startsWith(QLatin1Char('#')))
        return model.index(path.first().mid(1).toInt(), 0);
    return Below(model, {}, path);
}

QString TourControls::TextOf(const QString& place)
{
    if (IsItem(place))
        return Item(place).data().toString();
    const QWidget* widget = Find(place);
    for (const char* property : {"text", "plainText", "currentText", "windowTitle"})
        if (widget && widget->metaObject()->indexOfProperty(property) >= 0)
            return widget->property(property).toString();
    return {};
}

bool TourControls::IsLike(const QString& text, const QString& pattern)
{
    const QString expression =
        QRegularExpression::escape(pattern).replace(QLatin1String("\\*"), QLatin1String(".*"));
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}
