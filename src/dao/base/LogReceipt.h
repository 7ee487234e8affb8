#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

namespace dao {

// How far a console's part of the log had come: its last record, and what proves all of them.
struct LogHead {
    QString console;
    qlonglong number = 0;
    QString proof; // ProofOf the record's chain
    QDateTime time;
};

// Short enough to be written down, long enough that no other chain has the same: 24 hexadecimal digits.
// Empty for a text that is no chain.
QString ProofOf(const QString& chain);

// The heads of all consoles of a database at a time. As a text it is a few lines that can be printed, written
// down and typed in again: blanks between the digits and capitals do not matter.
struct LogReceipt {
    QString database;
    QDateTime time;
    QList<LogHead> heads;

    QString Text() const;
    // Nothing for a text that is none.
    static std::optional<LogReceipt> Parse(const QString& text);
    // Which file of a backup has it.
    static constexpr auto FileName = "log-receipt.txt";
};

} // namespace dao
