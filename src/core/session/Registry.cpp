#include "core/session/Registry.h"

#include "core/base/ProgramLog.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "dao/Transaction.h"
#include "dao/Workspace.h"
#include "dao/tables/RegistryTable.h"

namespace {

void NoteFailure(const char* doing, const QString& key, const std::exception& failure)
{
    ProgramLog::Write(QStringLiteral("Registry: %1 %2 failed: %3")
                          .arg(QLatin1String(doing), key, QString::fromUtf8(failure.what())));
}

} // namespace

QString RegistryGet(IDbSession& session, const QString& key, const QString& fallback)
{
    try {
        return dao::RegistryTable::Find(session.Database(), key).value_or(fallback);
    } catch (const std::exception& failure) {
        NoteFailure("reading", key, failure);
        return fallback;
    }
}

void RegistrySet(IDbSession& session, const QString& key, const QString& value)
{
    try {
        dao::RegistryTable::Store(session.Database(), key, value);
        session.Changes().TellOwn(dao::RegistryTable::Table);
    } catch (const std::exception& failure) {
        NoteFailure("writing", key, failure);
    }
}

void RegistryStore(IDbSession& session, const QList<std::pair<QString, QString>>& values)
{
    dao::Transaction transaction(session.Workspace(), dao::Transaction::Changes::Together);
    for (const auto& [key, value] : values)
        dao::RegistryTable::Store(session.Database(), key, value);
    transaction.Commit();
    session.Changes().TellOwn(dao::RegistryTable::Table);
}
