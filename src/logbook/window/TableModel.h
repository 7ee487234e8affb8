#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QStringList>
#include <QVariantList>

// A table that is there as a whole.
class TableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    static constexpr int SortRole = Qt::UserRole;

    struct Row {
        QStringList cells;
        QVariantList order = {}; // what each cell is sorted by; as it is shown where there is none
    };

    explicit TableModel(QStringList headings, QObject* parent = nullptr);

    void Show(const QList<Row>& rows);
    const QStringList& Headings() const { return m_headings; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const QStringList m_headings;
    QList<Row> m_rows;
};
