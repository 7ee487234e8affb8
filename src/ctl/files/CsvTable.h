#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// A CSV file whose first line names its columns, in any order and without regard to case.
class CsvTable {
public:
    struct Row {
        int line;           // in the file, from 1
        QStringList fields; // in the order of the columns asked for; empty when there are too few or too many
    };

    // Raises Error that names file, line and reason when the file is not such a table.
    CsvTable(const QString& path, const QStringList& columns);

    const QList<Row>& Rows() const { return m_rows; }

private:
    QList<Row> m_rows;
};
