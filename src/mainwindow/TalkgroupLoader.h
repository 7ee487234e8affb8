#pragma once

#include "mainwindow/ReloadCause.h"
#include "mainwindow/TalkgroupServices.h"

#include <QString>
#include <functional>

class TalkgroupModel;

// Fills the talkgroup tree from the database and offers the retries. The old nodes stay until everything is
// read; what could be read is shown when the operator does not want to try again.
class TalkgroupLoader {
public:
    TalkgroupLoader(const TalkgroupServices& services, TalkgroupModel& model)
        : m_services(services),
          m_model(model)
    {
    }

    // Groups that match a search text, at most as many as the settings say; empty: all.
    void LoadStatic(const QString& lookfor, ReloadCause cause);
    void LoadDynamic(const QString& lookfor, ReloadCause cause);

private:
    bool Read(const std::function<void()>& read, int retryQuestion, ReloadCause cause);

    TalkgroupServices m_services;
    TalkgroupModel& m_model;
};
