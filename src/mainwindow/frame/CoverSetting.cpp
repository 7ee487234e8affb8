#include "mainwindow/frame/CoverSetting.h"

#include "core/session/DbSession.h"
#include "core/session/Registry.h"
#include "core/session/SessionMemory.h"

namespace {

const QString Key = QStringLiteral("cover_after_logoff");
const QString On = QStringLiteral("1");
const QString Off = QStringLiteral("0");

} // namespace

bool CoversAfterLogoff(IDbSession& session, bool fallback)
{
    return session.Memory().Setting(Key, fallback ? On : Off).trimmed() == On;
}

void SetCoversAfterLogoff(IDbSession& session, bool on)
{
    RegistryStore(session, {{Key, on ? On : Off}});
}
