#include "setup/base/SetUpWork.h"

#include "core/session/DbSession.h"
#include "core/settings/SerialDefaults.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/TextIds.h"
#include "dao/Transaction.h"
#include "dao/Workspace.h"
#include "dao/base/FileAccess.h"
#include "dao/tables/RegistryTable.h"
#include "numbering/FleetPlanTable.h"
#include "setup/base/SetUpServices.h"
#include "setup/base/TextIds.h"

#include <QFileInfo>

namespace SetUpWork {

namespace {

void StoreNumbering(const SetUpChoice& choice, const dao::OpenOptions& options)
{
    if (choice.numbering == SetUpChoice::Numbering::Later)
        return;
    const bool mpt = choice.numbering == SetUpChoice::Numbering::Mpt1343;
    const auto workspace =
        dao::OpenWorkspace(choice.location, choice.administrator, choice.password, options);
    dao::Transaction transaction(*workspace);
    dao::RegistryTable::Store(workspace->Database(), QStringLiteral("subscriber_numbering"),
                              mpt ? QStringLiteral("MPT1343") : QStringLiteral("ACTIONET"));
    if (mpt) {
        FleetPlanTable plan(workspace->Database());
        for (const FleetRecord& fleet : choice.fleets)
            plan.Add(fleet);
    }
    transaction.Commit();
}

} // namespace

Outcome MakeDatabase(const SetUpChoice& choice, const dao::OpenOptions& options, const IStringSource& strings)
{
    if (choice.database != SetUpChoice::Database::New || !choice.HasDatabase())
        return {.done = true, .problem = {}};
    try {
        const QString folder = QFileInfo(choice.location.database).absolutePath();
        if (!dao::MakePrivateFolder(folder))
            return {.done = false, .problem = FormatMessage(strings, CoreText::FolderNotCreated, {folder})};
        dao::CreateDatabase(choice.location, choice.administrator, choice.password, options.passwordCost);
    } catch (const std::exception& failure) {
        return {.done = false, .problem = DescribeError(failure, strings)};
    }
    try {
        StoreNumbering(choice, options);
        return {.done = true, .problem = {}};
    } catch (const std::exception& failure) {
        return {.done = true,
                .problem =
                    FormatMessage(strings, SetUpText::NumberingNotStored, {DescribeError(failure, strings)})};
    }
}

void StoreSettings(const SetUpChoice& choice, const SetUpServices& services)
{
    if (choice.language)
        services.settings.Write(QStringLiteral("Language"), QStringLiteral("LangID"), *choice.language);
    if (choice.port)
        services.serial.SetDefaultPort(*choice.port);
    if (choice.baud)
        services.serial.SetDefaultBaud(*choice.baud);
    if (!choice.HasDatabase())
        return;
    services.logon.SetDatabaseFile(choice.location.database);
    services.logon.SetWorkgroupFile(choice.location.workgroup);
    if (choice.database == SetUpChoice::Database::New)
        services.logOnNextAs(choice.administrator, choice.password);
}

} // namespace SetUpWork
