#include "admin/DirectoryDeletion.h"

#include "admin/TextIds.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "dao/Transaction.h"
#include "dao/Workspace.h"
#include "dao/tables/RegroupTable.h"

namespace {

enum class Outcome { Deleted, Protected, Failed };

Outcome Drop(IDbSession& session, const DeletionItem& item)
{
    try {
        if (dao::RegroupTable::Holds(session.Database(), item.id))
            return Outcome::Protected;
        const auto query = session.Database().QueryDef(QStringLiteral("drop_address"));
        query->SetParameter(QStringLiteral("id"), item.id);
        query->Execute();
        return Outcome::Deleted;
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("Directory: %1 not deleted: %2")
                              .arg(item.callsign, QString::fromUtf8(failure.what())));
        return Outcome::Failed;
    }
}

void WarnProtected(const AdminServices& services, const DeletionItem& item)
{
    services.prompt.ShowWarning(
        FormatMessage(services.strings, AdminText::AddressInRegroup, {item.callsign}));
}

bool DeleteOneByOne(const AdminServices& services, const std::vector<DeletionItem>& items)
{
    bool deleted = false;
    for (const DeletionItem& item : items) {
        if (!services.prompt.AskConfirmation(
                FormatMessage(services.strings, AdminText::DeleteAddressQuestion, {item.callsign})))
            continue;
        const Outcome outcome = Drop(services.session, item);
        if (outcome == Outcome::Protected)
            WarnProtected(services, item);
        deleted = deleted || outcome == Outcome::Deleted;
    }
    return deleted;
}

// In one transaction: thousands of separate ones would take minutes. It ends before the first box appears,
// which might stay open while other consoles wait for the database.
bool DeleteTogether(const AdminServices& services, const std::vector<DeletionItem>& items)
{
    std::vector<DeletionItem> refused;
    bool deleted = false;
    try {
        dao::Transaction transaction(services.session.Workspace());
        for (const DeletionItem& item : items) {
            const Outcome outcome = Drop(services.session, item);
            if (outcome == Outcome::Protected)
                refused.push_back(item);
            deleted = deleted || outcome == Outcome::Deleted;
        }
        transaction.Commit();
    } catch (const std::exception& failure) {
        ProgramLog::Write(
            QStringLiteral("Directory: nothing deleted: %1").arg(QString::fromUtf8(failure.what())));
        deleted = false;
    }
    for (const DeletionItem& item : refused)
        WarnProtected(services, item);
    return deleted;
}

} // namespace

bool DeleteEntries(const AdminServices& services, const std::vector<DeletionItem>& items)
{
    const bool confirmEach =
        items.size() <= 1 ||
        services.prompt.AskChoice(services.strings.LoadString(AdminText::ConfirmEachQuestion));
    const bool deleted = confirmEach ? DeleteOneByOne(services, items) : DeleteTogether(services, items);
    if (deleted)
        services.session.Changes().TellOwn(QStringLiteral("address"));
    return deleted;
}
