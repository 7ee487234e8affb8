#include "ctl/commands/LogSigner.h"

#include "core/base/AppPaths.h"
#include "core/eventlog/ConsoleName.h"
#include "core/eventlog/LogKey.h"
#include "core/texts/Errors.h"
#include "ctl/program/Console.h"
#include "dao/base/FileAccess.h"

namespace {

constexpr int OwnNumber = 0; // those of consoles begin with 1

QString LockFile()
{
    dao::MakePrivateFolder(AppPaths::DataFolder());
    return LogKey::FileIn(AppPaths::DataFolder()) + QStringLiteral(".lock");
}

} // namespace

LogSigner::LogSigner() : m_lock(LockFile())
{
    if (m_lock.TryLock() == FileLock::Result::HeldByAnother)
        throw Error(ErrorCode::General,
                    QStringLiteral(
                        "another veltorkynctl of this account adds a record to a log just now; try again"));
}

dao::EventTable::Signer LogSigner::Signer()
{
    return {
        ConsoleName(AppPaths::DataFolder(), OwnNumber),
        [this](const QString& databaseId, const QString& previous, const dao::EventRecord& record) {
            m_proof.emplace(AppPaths::DataFolder(), databaseId);
            m_signed = record;
            m_signed.chain = m_proof->ChainOf(record, previous);
            if (m_signed.chain.isEmpty())
                Console::PrintError(
                    QStringLiteral("veltorkynctl: the record of this has no proof: the key %1 cannot be used")
                        .arg(LogKey::FileIn(AppPaths::DataFolder())));
            return m_signed.chain;
        }};
}

void LogSigner::Keep()
{
    if (m_proof && !m_signed.chain.isEmpty())
        m_proof->Keep(m_signed.console, m_signed.consoleNumber, m_signed.chain);
}
