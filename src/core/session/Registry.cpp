#include "core/session/Registry.h"

#include "core/base/ProgramLog.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "dao/Transaction.h"
#include "dao/Workspace.h"
#include "dao/records/Database.h"

namespace {

constexpr auto Table = "kyn_registry";
constexpr auto KeyIndex = "i_key";

void NoteFailure(const char* doing, const QString& key, const std::exception& failure)
{
    ProgramLog::Write(QStringLiteral("Registry: %1 %2 failed: %3")
                          .arg(QLatin1String(doing), key, QString::fromUtf8(failure.what())));
}

void Store(IDbSession& session, const QString& key, const QString& value)
{
    const auto rows = session.Database().OpenTable(Table);
    rows->SetIndex(KeyIndex);
    rows->Seek(key);
    if (rows->NoMatch()) {
        rows->AddNew();
        rows->SetField("Key", key);
    } else {
        rows->Edit();
    }
    rows->SetField("Value", value);
    rows->Update();
}

} // namespace

QString RegistryGet(IDbSession& session, const QString& key, const QString& fallback)
{
    try {
        const auto rows = session.Database().OpenTable(Table);
        rows->SetIndex(KeyIndex);
        rows->Seek(key);
        return rows->NoMatch() ? fallback : rows->Field("Value").toString();
    } catch (const std::exception& failure) {
        NoteFailure("reading", key, failure);
        return fallback;
    }
}

void RegistrySet(IDbSession& session, const QString& key, const QString& value)
{
    try {
        Store(session, key, value);
        session.Changes().TellOwn(Table);
    } catch (const std::exception& failure) {
        NoteFailure("writing", key, failure);
    }
}

void RegistryStore(IDbSession& session, const QList<std::pair<QString, QString>>& values)
{
    dao::Transaction transaction(session.Workspace());
    for (const auto& [key, value] : values)
        Store(session, key, value);
    transaction.Commit();
    session.Changes().TellOwn(Table);
}
