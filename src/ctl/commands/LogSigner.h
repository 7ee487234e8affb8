#pragma once

#include "core/base/FileLock.h"
#include "core/eventlog/LogProof.h"
#include "dao/tables/EventTable.h"

#include <optional>

// Signs the records that this program itself adds to a log, as a console of the account of the system that
// runs it, with the number 0. One at a time under an account.
class LogSigner {
public:
    // Error while another one works.
    LogSigner();
    dao::EventTable::Signer Signer();
    // What was signed is stored.
    void Keep();

private:
    FileLock m_lock;
    std::optional<LogProof> m_proof;
    dao::EventRecord m_signed;
};
