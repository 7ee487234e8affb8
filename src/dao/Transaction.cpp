#include "dao/Transaction.h"
#include "dao/Workspace.h"

namespace dao {

Transaction::Transaction(Workspace& workspace, Changes changes) : m_workspace(workspace)
{
    if (changes == Changes::Together)
        workspace.BeginTogether();
    else
        workspace.BeginTrans();
}

Transaction::~Transaction()
{
    if (m_done)
        return;
    try {
        m_workspace.Rollback();
    } catch (const Error&) {
        // The workspace was closed, or its server is gone: either has undone it.
    }
}

void Transaction::Commit()
{
    m_workspace.CommitTrans();
    m_done = true;
}

} // namespace dao
