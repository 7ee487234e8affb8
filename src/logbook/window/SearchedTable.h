#pragma once

#include "logbook/window/TableModel.h"

#include <QWidget>
#include <span>

class QDateTime;
class QHBoxLayout;
class QLineEdit;
class QSortFilterProxyModel;
class QTableView;

// A table that is sorted by its headings, below a field that leaves the lines with a text in any column.
class SearchedTable : public QWidget {
    Q_OBJECT

public:
    // `name`: of the list; `captionId`: what it is for screen readers; `widths`: of each column at first, in
    // characters.
    SearchedTable(const QStringList& headings, const char* name, int captionId, std::span<const int> widths,
                  QWidget* parent);

    // Whoever reads it keeps place and line. A line is known by its first cell.
    void Show(const QList<TableModel::Row>& rows);
    void Sort(int column, Qt::SortOrder order);
    void TakeKeyboard();
    // Of all columns, in pixels.
    int Width() const;

    // As it is searched and sorted.
    const QStringList& Headings() const { return m_model->Headings(); }
    QList<QStringList> Cells() const;
    QString Csv() const;
    // The row of Show that is the current line; -1 when none is.
    int CurrentRow() const;

    // Where a button beside the field stands.
    QHBoxLayout& SearchRow() { return *m_row; }

    // A time in the form of the desktop, empty for none; and what it is sorted by: none comes before all.
    static QString Shown(const QDateTime& time);
    static QVariant Order(const QDateTime& time);

Q_SIGNALS:
    // Another line is the current one, or none.
    void CurrentChanged();

private:
    void BuildList(const char* name, int captionId, std::span<const int> widths);

    TableModel* m_model;
    QSortFilterProxyModel* m_sorted;
    QHBoxLayout* m_row;
    QLineEdit* txtSearch;
    QTableView* m_list;
};
