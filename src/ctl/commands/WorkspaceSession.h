#pragma once

#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "dao/Workspace.h"

// Presents an open workspace as the session that shared code expects; it asks nobody and keeps no paths.
class WorkspaceSession : public IDbSession {
public:
    explicit WorkspaceSession(dao::Workspace& workspace) : m_workspace(workspace) {}

    dao::Workspace& Workspace() override { return m_workspace; }
    dao::Database& Database() override { return m_workspace.Database(); }
    QString MakePID(const QString&, const QString&) override { return {}; }
    bool IsOpen() const override { return true; }
    bool IsMemberOf(const QString& group) override
    {
        return m_workspace.Users().Item(m_workspace.UserName())->Groups().Contains(group);
    }
    DatabaseChanges& Changes() override { return m_changes; }

private:
    dao::Workspace& m_workspace;
    DatabaseChanges m_changes;
};
