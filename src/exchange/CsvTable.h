#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

struct IStringSource;

// What a CSV file holds whose first line names its columns, in any order and without regard to case.
class CsvTable {
public:
    struct Columns {
        QStringList needed;
        QStringList optional;
    };
    struct Row {
        int line; // in the file, from 1
        // In the order of the columns, the needed ones first; a Null for one that the file has not. Empty
        // when there are too few or too many.
        QStringList fields;
    };

    // Raises Error that names file, line and reason when it is not such a table.
    CsvTable(const QString& path, const QByteArray& bytes, const Columns& columns,
             const IStringSource& strings);
    // The same of a file that is read here.
    static CsvTable Read(const QString& path, const Columns& columns, const IStringSource& strings);

    const QList<Row>& Rows() const { return m_rows; }

private:
    QList<Row> m_rows;
};
