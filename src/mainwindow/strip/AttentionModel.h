#pragma once

#include "mainwindow/strip/AttentionTexts.h"

#include <QAbstractTableModel>

// What waits for a person, an entry a row.
class AttentionModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Kind, Caller, What, Since, Times, TakenBy, ColumnCount };
    static constexpr int IdRole = Qt::UserRole;

    AttentionModel(const IStringSource& strings, QObject* parent);

    void Replace(const std::vector<dao::AttentionRecord>& entries, const QDateTime& now);
    // -1 when it is not listed.
    int RowOf(const QString& id) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const IStringSource& m_strings;
    AttentionTexts m_texts;
    std::vector<dao::AttentionRecord> m_entries;
    QDateTime m_now;
};
