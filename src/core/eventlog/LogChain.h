#pragma once

#include "dao/tables/EventIndex.h"

#include <QByteArray>
#include <QString>

// Ties each record of a console to the one before it, by a hash that only who has the key can make. The chain
// of a record begins with the check value of the key, so that it can be told which key made it; key and check
// value are other ones in each database.
class LogChain {
public:
    LogChain(const QByteArray& key, const QString& databaseId);

    // The chain of the record, as it is stored, after that of the console's record before it; empty for the
    // first one.
    QString Next(const QString& previous, const dao::EventRecord& record) const;

    const QString& Check() const { return m_check; }
    static QString CheckOf(const QString& chain) { return chain.left(CheckSize); }

private:
    static constexpr int CheckSize = 8;

    QByteArray m_key; // of this database
    QString m_check;
};
