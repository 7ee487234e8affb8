#include "logbook/window/SearchedTable.h"

#include "logbook/query/LogLines.h"
#include "logbook/window/TextIds.h"

#include <QDateTime>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

SearchedTable::SearchedTable(const QStringList& headings, const char* name, int captionId,
                             std::span<const int> widths, QWidget* parent)
    : QWidget(parent),
      m_model(new TableModel(headings, this)),
      m_sorted(new QSortFilterProxyModel(this)),
      m_row(new QHBoxLayout),
      txtSearch(new QLineEdit(this)),
      m_list(new QTableView(this))
{
    auto* label = new QLabel(this);
    label->setProperty("textId", LogbookText::Search);
    label->setBuddy(txtSearch);
    txtSearch->setObjectName(QStringLiteral("txtSearch"));
    txtSearch->setClearButtonEnabled(true);
    m_row->addWidget(label);
    m_row->addWidget(txtSearch);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(m_row);
    BuildList(name, captionId, widths);
    layout->addWidget(m_list, 1);
    connect(txtSearch, &QLineEdit::textChanged, m_sorted, &QSortFilterProxyModel::setFilterFixedString);
}

void SearchedTable::BuildList(const char* name, int captionId, std::span<const int> widths)
{
    m_sorted->setSourceModel(m_model);
    m_sorted->setFilterKeyColumn(-1); // any
    m_sorted->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setSortRole(TableModel::SortRole);
    m_list->setObjectName(QLatin1String(name));
    m_list->setProperty("accessibleNameId", captionId);
    m_list->setModel(m_sorted);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setTabKeyNavigation(false);
    m_list->setWordWrap(false);
    m_list->setAlternatingRowColors(true);
    m_list->setSortingEnabled(true);
    Sort(0, Qt::AscendingOrder);
    m_list->verticalHeader()->hide();
    m_list->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 4);
    m_list->horizontalHeader()->setHighlightSections(false);
    m_list->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_list->horizontalHeader()->setStretchLastSection(true);
    for (std::size_t column = 0; column < widths.size(); ++column)
        m_list->setColumnWidth(static_cast<int>(column), widths[column] * fontMetrics().averageCharWidth());
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &SearchedTable::CurrentChanged);
    connect(m_sorted, &QAbstractItemModel::modelReset, this, &SearchedTable::CurrentChanged);
}

void SearchedTable::Show(const QList<TableModel::Row>& rows)
{
    const QString current = m_list->currentIndex().siblingAtColumn(0).data().toString();
    const int place = m_list->verticalScrollBar()->value();
    m_model->Show(rows);
    for (int row = 0; !current.isEmpty() && row < m_sorted->rowCount(); ++row)
        if (m_sorted->index(row, 0).data().toString() == current)
            m_list->setCurrentIndex(m_sorted->index(row, 0));
    m_list->verticalScrollBar()->setValue(place);
}

void SearchedTable::Sort(int column, Qt::SortOrder order)
{
    m_list->sortByColumn(column, order);
}

void SearchedTable::TakeKeyboard()
{
    txtSearch->setFocus();
    txtSearch->selectAll();
}

int SearchedTable::Width() const
{
    int width = 0;
    for (int column = 0; column < m_model->columnCount(); ++column)
        width += m_list->columnWidth(column);
    return width;
}

QList<QStringList> SearchedTable::Cells() const
{
    QList<QStringList> rows;
    for (int row = 0; row < m_sorted->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < m_sorted->columnCount(); ++column)
            cells.append(m_sorted->index(row, column).data().toString());
        rows.append(cells);
    }
    return rows;
}

QString SearchedTable::Csv() const
{
    QString csv = LogLines::CsvOf(Headings());
    for (const QStringList& cells : Cells())
        csv += LogLines::CsvOf(cells);
    return csv;
}

int SearchedTable::CurrentRow() const
{
    return m_sorted->mapToSource(m_list->currentIndex()).row();
}

QString SearchedTable::Shown(const QDateTime& time)
{
    const QDateTime local = time.toLocalTime();
    return time.isValid() ? QLocale().toString(local.date(), QLocale::ShortFormat) +
                                local.toString(QStringLiteral(" HH:mm:ss"))
                          : QString();
}

QVariant SearchedTable::Order(const QDateTime& time)
{
    return time.isValid() ? time.toMSecsSinceEpoch() : qint64(-1);
}
