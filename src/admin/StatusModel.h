#pragma once

#include "dao/tables/StatusTable.h"
#include <QAbstractTableModel>
#include <vector>

struct IStringSource;

// The status messages, one a row.
class StatusModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Code, Incoming, Outgoing, ColumnCount };
    // status_code.
    static constexpr int TagRole = Qt::UserRole;

    StatusModel(const IStringSource& strings, QObject* parent);

    void Replace(std::vector<dao::StatusRecord> rows);
    // -1 when the code is not listed.
    int RowOf(int code) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const IStringSource& m_strings;
    std::vector<dao::StatusRecord> m_rows;
};
