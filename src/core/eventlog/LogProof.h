#pragma once

#include "core/eventlog/LogChain.h"
#include "core/eventlog/LogHeads.h"

#include <QString>
#include <optional>

// What the log of a database proves itself by: the chains of the records that this account of the system
// stores, and how far they have come. Uses its folder from the first record on. Without a key that can be
// trusted records have no chain, which is told in the program's log; they are stored all the same. For one
// thread.
class LogProof {
public:
    LogProof(QString folder, QString databaseId);

    // The chain of a record that goes behind the one with this chain; empty without a key.
    QString ChainOf(const dao::EventRecord& record, const QString& previous);
    // The console's last record is stored.
    void Keep(const QString& console, qlonglong number, const QString& chain);

private:
    void Open();

    QString m_folder;
    QString m_databaseId;
    bool m_opened = false;
    std::optional<LogChain> m_chain;
    LogHeads m_heads;
};
