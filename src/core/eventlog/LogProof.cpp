#include "core/eventlog/LogProof.h"

#include "core/base/ProgramLog.h"
#include "core/eventlog/LogKey.h"

#include <utility>

LogProof::LogProof(QString folder, QString databaseId)
    : m_folder(std::move(folder)),
      m_databaseId(std::move(databaseId)),
      m_heads(m_folder, m_databaseId)
{
}

void LogProof::Open()
{
    if (std::exchange(m_opened, true))
        return;
    try {
        m_chain.emplace(LogKey::Own(m_folder), m_databaseId);
    } catch (const std::exception& failure) {
        ProgramLog::Write(
            QStringLiteral("Log records have no proof: %1").arg(QString::fromUtf8(failure.what())));
    }
}

QString LogProof::ChainOf(const dao::EventRecord& record, const QString& previous)
{
    Open();
    return m_chain ? m_chain->Next(previous, record) : QString();
}

void LogProof::Keep(const QString& console, qlonglong number, const QString& chain)
{
    if (m_chain)
        m_heads.Keep({console, number, dao::ProofOf(chain), QDateTime::currentDateTimeUtc()});
}
