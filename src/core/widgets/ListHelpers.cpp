#include "core/widgets/ListHelpers.h"

#include <QApplication>
#include <QHeaderView>
#include <QTableView>
#include <QTreeView>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace {

QHeaderView* HeaderOf(QAbstractItemView& view)
{
    if (auto* tree = qobject_cast<QTreeView*>(&view))
        return tree->header();
    if (auto* table = qobject_cast<QTableView*>(&view))
        return table->horizontalHeader();
    return nullptr;
}

// Text widths as the sum of their characters' widths, which is quick: a view lays out every text that it
// measures, and gives up after a thousand. Kerning only makes a text narrower than that sum.
class TextWidths {
public:
    explicit TextWidths(const QFontMetricsF& metrics) : m_metrics(metrics) {}

    double Of(const QString& text)
    {
        double width = 0;
        for (const QChar character : text)
            width += Of(character);
        return width;
    }

private:
    double Of(QChar character)
    {
        if (character.unicode() >= m_known.size())
            return m_metrics.horizontalAdvance(character);
        std::optional<double>& known = m_known[character.unicode()];
        if (!known)
            known = m_metrics.horizontalAdvance(character);
        return *known;
    }

    const QFontMetricsF m_metrics;
    std::array<std::optional<double>, 0x250> m_known; // Latin letters
};

// What the widest row of all needs. The view by itself only has to look at the rows that are seen.
int WidthOf(QAbstractItemView& view, int column, TextWidths& widths)
{
    const QAbstractItemModel* model = view.model();
    double widest = -1;
    QModelIndex row;
    for (int i = 0; model && i < model->rowCount(); ++i) {
        const QModelIndex index = model->index(i, column);
        const double width = widths.Of(index.data().toString());
        if (width > widest) {
            widest = width;
            row = index;
        }
    }
    if (!row.isValid())
        return view.sizeHintForColumn(column);
    const int besideText =
        view.sizeHintForIndex(row).width() - view.fontMetrics().horizontalAdvance(row.data().toString());
    return std::max(view.sizeHintForColumn(column), besideText + static_cast<int>(std::ceil(widest)));
}

} // namespace

void AutosizeColumns(QAbstractItemView& view, bool fitHeaders)
{
    QHeaderView* header = HeaderOf(view);
    if (!header)
        return;
    TextWidths widths{QFontMetricsF(view.font())};
    const int precision = header->resizeContentsPrecision();
    header->setResizeContentsPrecision(0);
    for (int column = 0; column < header->count(); ++column) {
        const int contents = WidthOf(view, column, widths);
        const int caption = fitHeaders ? header->sectionSizeHint(column) : 0;
        header->resizeSection(column, std::max({contents, caption, header->minimumSectionSize()}));
    }
    header->setResizeContentsPrecision(precision);
}

void SetFullRowSelect(QAbstractItemView& view, bool on)
{
    view.setSelectionBehavior(on ? QAbstractItemView::SelectRows : QAbstractItemView::SelectItems);
    if (auto* tree = qobject_cast<QTreeView*>(&view))
        tree->setAllColumnsShowFocus(on);
}

bool HasSelectedItem(const QAbstractItemView& view)
{
    return GetSelectedItem(view).isValid();
}

QModelIndex GetSelectedItem(const QAbstractItemView& view)
{
    const QModelIndex current = view.currentIndex();
    const QItemSelectionModel* selection = view.selectionModel();
    return current.isValid() && selection && selection->isSelected(current) ? current : QModelIndex();
}

void SelectNothing(QAbstractItemView& view)
{
    view.selectionModel()->clear();
}

bool IsFormLoaded(const QString& name)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(),
                       [&](const QWidget* window) { return window->objectName() == name; });
}
