#pragma once

#include "mainwindow/base/ReloadCause.h"
#include "mainwindow/talkgroups/TalkgroupReader.h"
#include "mainwindow/talkgroups/TalkgroupServices.h"

#include <QString>
#include <functional>

class TalkgroupModel;

// Fills the talkgroup tree, from the database where the operator asks for it and offers the retries then,
// else from the session's memory. The old nodes stay until everything is read; what could be read is shown
// when the operator does not want to try again.
class TalkgroupLoader {
public:
    TalkgroupLoader(const TalkgroupServices& services, TalkgroupModel& model)
        : m_services(services),
          m_model(model)
    {
    }

    // Groups that match a search text, at most as many as the settings say; an empty one matches all.
    void LoadStatic(const QString& lookfor, ReloadCause cause);
    void LoadDynamic(const QString& lookfor, ReloadCause cause);
    // How many groups of a kind are shown when there are more that match; 0 when all are shown.
    int CutAt() const { return m_staticCutAt != 0 ? m_staticCutAt : m_dynamicCutAt; }

private:
    TalkgroupReader ReaderFor(ReloadCause cause) const;
    bool IsAwaiting() const;
    bool Read(const std::function<void()>& read, int retryQuestion, ReloadCause cause);

    TalkgroupServices m_services;
    TalkgroupModel& m_model;
    int m_staticCutAt = 0;
    int m_dynamicCutAt = 0;
};
