#include "mainwindow/talkgroups/TalkgroupLoader.h"

#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/ListLimit.h"
#include "radio/facade/Map27Executive.h"

void TalkgroupLoader::LoadStatic(const QString& lookfor, ReloadCause cause)
{
    const int limit = AddressListLimit(m_services.settings);
    std::vector<TalkgroupRow> groups;
    const auto read = [&] {
        groups.clear();
        if (cause == ReloadCause::Operator && IsAwaiting())
            m_services.session.Memory().ReadAgain();
        ReaderFor(cause).ReadStatic(lookfor, limit + 1, groups);
    };
    Read(read, MainText::StaticGroupsUnread, cause);
    m_staticCutAt = CutToLimit(groups, limit) ? limit : 0;
    m_model.ReplaceStatic(groups);
}

void TalkgroupLoader::LoadDynamic(const QString& lookfor, ReloadCause cause)
{
    const int limit = AddressListLimit(m_services.settings);
    const TalkgroupReader reader = ReaderFor(cause);
    std::vector<TalkgroupRow> groups;
    std::vector<GroupMemberRow> members;
    QString defaultGroup;
    const auto readGroups = [&] {
        groups.clear();
        defaultGroup = m_services.settings.DefaultGroupKey();
        reader.ReadDynamic(lookfor, limit + 1, groups);
    };
    const auto readMembers = [&] {
        members.clear();
        reader.ReadMembers(m_services.executive.MyCallsign(), members);
    };
    if (Read(readGroups, MainText::DynamicGroupsUnread, cause))
        Read(readMembers, MainText::DynamicGroupsUnread, cause);
    m_dynamicCutAt = CutToLimit(groups, limit) ? limit : 0;
    m_model.ReplaceDynamic(groups, members, defaultGroup);
}

// Only the operator waits for the database. What is still on its way there is in the memory alone, which is
// read again for him then.
TalkgroupReader TalkgroupLoader::ReaderFor(ReloadCause cause) const
{
    return {m_services.session, cause == ReloadCause::Operator && !IsAwaiting()
                                    ? TalkgroupReader::From::Database
                                    : TalkgroupReader::From::Memory};
}

bool TalkgroupLoader::IsAwaiting() const
{
    return m_services.session.Memory().IsAwaiting();
}

// Until it succeeds or the operator gives up. Whether it succeeded.
bool TalkgroupLoader::Read(const std::function<void()>& read, int retryQuestion, ReloadCause cause)
{
    for (;;) {
        try {
            read();
            return true;
        } catch (const std::exception& failure) {
            if (cause == ReloadCause::OtherConsole || WasGivenUp(failure))
                throw;
            ProgramLog::Write(DescribeError(failure, m_services.strings));
        }
        if (!m_services.prompt.AskQuestion(m_services.strings.LoadString(retryQuestion)))
            return false;
    }
}
