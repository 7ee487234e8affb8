#pragma once

#include "logbook/window/LogbookLine.h"

#include <QAbstractTableModel>
#include <deque>
#include <vector>

// The lines of the log window, the newest first: a part of the log without a gap in what the filter lets
// through, which grows at both ends.
class LogbookModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit LogbookModel(const IStringSource& strings, QObject* parent = nullptr);

    // `facts`: how the records are to be read.
    void Begin(const LogFacts& facts);
    void Clear();
    // Newest first; a record that is there already is left out.
    void AddOlder(const std::vector<dao::EventRecord>& records);
    // Oldest first; likewise. Returns how many lines have come to stand above the others.
    int AddNewer(const std::vector<dao::EventRecord>& records);

    bool IsEmpty() const { return m_records.empty(); }
    const dao::EventRecord& At(int row) const { return m_records[static_cast<std::size_t>(row)]; }
    // The row of this record, or of the next older one; -1 without any.
    int RowOf(qlonglong record) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    LogbookLine m_line;
    LogFacts m_facts;
    std::deque<dao::EventRecord> m_records;
};
