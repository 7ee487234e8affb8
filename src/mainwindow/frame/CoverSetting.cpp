#include "mainwindow/frame/CoverSetting.h"

#include "core/session/Registry.h"

namespace {

const QString Key = QStringLiteral("cover_after_logoff");
const QString On = QStringLiteral("1");
const QString Off = QStringLiteral("0");

} // namespace

bool CoversAfterLogoff(IDbSession& session, bool fallback)
{
    return RegistryGet(session, Key, fallback ? On : Off).trimmed() == On;
}

void SetCoversAfterLogoff(IDbSession& session, bool on)
{
    RegistryStore(session, {{Key, on ? On : Off}});
}
