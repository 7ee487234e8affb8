#include "core/Registry.h"

#include "core/DbSession.h"
#include "core/ProgramLog.h"
#include "dao/Database.h"

namespace {

constexpr auto table = "kyn_registry";
constexpr auto keyIndex = "i_key";

void NoteFailure(const char* doing, const QString& key, const std::exception& failure)
{
    ProgramLog::Write(QStringLiteral("Registry: %1 %2 failed: %3")
                          .arg(QLatin1String(doing), key, QString::fromUtf8(failure.what())));
}

} // namespace

QString RegistryGet(IDbSession& session, const QString& key, const QString& fallback)
{
    try {
        const auto rows = session.Database().OpenTable(table);
        rows->SetIndex(keyIndex);
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
        const auto rows = session.Database().OpenTable(table);
        rows->SetIndex(keyIndex);
        rows->Seek(key);
        if (rows->NoMatch()) {
            rows->AddNew();
            rows->SetField("Key", key);
        } else {
            rows->Edit();
        }
        rows->SetField("Value", value);
        rows->Update();
    } catch (const std::exception& failure) {
        NoteFailure("writing", key, failure);
    }
}
