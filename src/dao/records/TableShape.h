#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <memory>
#include <vector>

namespace dao {

// A table as the recordsets need to know it: fields, identity, indexes by name, and the SQL that follows from
// them, each text made once. Indexes by their DAO names come from the table index_def, since "PrimaryKey" is
// the name of several.
class TableShape {
public:
    enum class Type { Text, Number, Boolean, Time };
    struct Column {
        QString name;
        Type type;
        int size; // characters of a text; 0 = no limit
    };
    struct Index {
        QString name;
        QStringList fields;
        QString seekSql; // one record by the index's fields
        QString keysSql; // identities of all records in the index's order
    };

    // `keyFields`: the fields of the primary key, in their order. `indexes`: index name, field and whether it
    // ignores case, for each field of each index in their order.
    TableShape(const QString& name, const QList<Column>& columns, const QStringList& keyFields,
               const std::vector<QVariantList>& indexes);

    const QString& Name() const { return m_name; }
    const QList<Column>& Columns() const { return m_columns; }
    const QStringList& ColumnNames() const { return m_columnNames; }
    // Fields of the primary key, which identify a record.
    const QStringList& KeyFields() const { return m_keyFields; }
    // Kind::NoSuchIndex.
    const Index& IndexNamed(const QString& name) const;
    // The name of the index that covers exactly these fields; the fields themselves when there is none.
    QString IndexOf(const QString& fields) const;

    // The fields are positions in Columns(), in ascending order, as bits.
    const QString& InsertSql(quint64 fields) const;
    // Inserts the record, or changes the one that has the same key.
    QString PutSql(quint64 fields) const;
    const QString& UpdateSql(quint64 fields) const; // the key's values follow
    const QString& DeleteSql() const { return m_deleteSql; }
    const QString& RowSql() const { return m_rowSql; } // one record by its key

private:
    void MakeIndexes(const std::vector<QVariantList>& rows);
    QStringList NamesOf(quint64 fields) const;

    QString m_name;
    QList<Column> m_columns;
    QStringList m_columnNames;
    QStringList m_keyFields;
    QList<Index> m_indexes;
    QString m_deleteSql;
    QString m_rowSql;
    mutable QHash<quint64, QString> m_insertSql;
    mutable QHash<quint64, QString> m_updateSql;
};

} // namespace dao
