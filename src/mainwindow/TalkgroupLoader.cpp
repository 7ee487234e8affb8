#include "mainwindow/TalkgroupLoader.h"

#include "core/Errors.h"
#include "core/ProgramLog.h"
#include "core/Prompt.h"
#include "core/Settings.h"
#include "core/StringSource.h"
#include "mainwindow/ListLimit.h"
#include "mainwindow/TalkgroupReader.h"
#include "mainwindow/TextIds.h"
#include "radio/Map27Executive.h"

void TalkgroupLoader::LoadStatic(const QString& lookfor, ReloadCause cause)
{
    const int limit = AddressListLimit(m_services.settings);
    std::vector<TalkgroupRow> groups;
    const auto read = [&] {
        groups.clear();
        TalkgroupReader(m_services.session).ReadStatic(lookfor, limit + 1, groups);
    };
    Read(read, MainText::StaticGroupsUnread, cause);
    m_staticCutAt = CutToLimit(groups, limit) ? limit : 0;
    m_model.ReplaceStatic(groups);
}

void TalkgroupLoader::LoadDynamic(const QString& lookfor, ReloadCause cause)
{
    const int limit = AddressListLimit(m_services.settings);
    const TalkgroupReader reader(m_services.session);
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
    if (Read(readGroups, MainText::DynamicGroupsUnread, cause)) {
        Read(readMembers, MainText::DynamicGroupsUnread, cause);
    }
    m_dynamicCutAt = CutToLimit(groups, limit) ? limit : 0;
    m_model.ReplaceDynamic(groups, members, defaultGroup);
}

// Until it succeeds or the operator gives up. Whether it succeeded.
bool TalkgroupLoader::Read(const std::function<void()>& read, int retryQuestion, ReloadCause cause)
{
    for (;;) {
        try {
            read();
            return true;
        } catch (const std::exception& failure) {
            if (cause == ReloadCause::OtherConsole) {
                throw;
            }
            ProgramLog::Write(DescribeError(failure, m_services.strings));
        }
        if (!m_services.prompt.AskQuestion(m_services.strings.LoadString(retryQuestion))) {
            return false;
        }
    }
}
