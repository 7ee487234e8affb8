#include "mainwindow/log/LogList.h"

#include "mainwindow/log/LogDelegate.h"
#include "mainwindow/log/LogModel.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>

namespace {

constexpr double SmallestFont = 6.75; // points

} // namespace

LogList::LogList(LogModel& model, QWidget* parent) : QTreeView(parent)
{
    setObjectName(QStringLiteral("lvLog"));
    setModel(&model);
    setItemDelegate(new LogDelegate(this));
    setRootIsDecorated(false);
    setIndentation(0);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
}

void LogList::SetFontStep(int step)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(SmallestFont + std::clamp(step, 0, FontSteps - 1));
    setFont(font);
    Measure();
}

void LogList::WidenFor(int row)
{
    const int needed = sizeHintForIndex(model()->index(row, 0)).width();
    if (needed > m_contentWidth) {
        m_contentWidth = needed;
        FitColumn();
    }
}

void LogList::Measure()
{
    m_contentWidth = 0;
    for (int row = 0; row < model()->rowCount(); ++row)
        WidenFor(row);
    FitColumn();
}

void LogList::FitColumn()
{
    header()->resizeSection(0, std::max(m_contentWidth, viewport()->width()));
}

void LogList::resizeEvent(QResizeEvent* event)
{
    QTreeView::resizeEvent(event);
    FitColumn();
}

void LogList::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        CopySelected();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void LogList::CopySelected() const
{
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    const auto& delegate = static_cast<const LogDelegate&>(*itemDelegate());
    QStringList lines;
    for (const QModelIndex& row : rows)
        lines.append(delegate.displayText(row.data(), locale()));
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}
