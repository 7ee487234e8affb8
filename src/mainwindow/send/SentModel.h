#pragma once

#include <QAbstractTableModel>

class SentMessages;
struct IStringSource;
struct SentMessage;

// The messages of this shift as a table, newest first.
class SentModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Time, To, What, State, Why, ColumnCount };

    // Both must outlive it.
    SentModel(const IStringSource& strings, const SentMessages& messages, QObject* parent);

    const SentMessage& MessageAt(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString TextOf(const SentMessage& message, int column) const;
    QString Describe(const SentMessage& message) const;

    const IStringSource& m_strings;
    const SentMessages& m_messages;
    int m_rows = 0;
};
