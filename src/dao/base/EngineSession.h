#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace dao {

class AccountStore;
class Engine;

// Who wants to know what other sessions do; called from the event loop.
struct WorkspaceWatcher {
    // Another session changed this table ("account" and the like for accounts); an empty name: nobody knows
    // what was changed.
    std::function<void(const QString& table)> changed;
    // The server does not answer any more, or answers again. The session goes on by itself.
    std::function<void(bool away)> away;
};

// What an engine makes of a logon; a workspace is built on it.
struct EngineSession {
    std::shared_ptr<Engine> engine;
    std::shared_ptr<AccountStore> accounts;
    // Of the two, each engine has one: it tells what other sessions change, or it can be asked.
    std::function<void(const WorkspaceWatcher&)> watch;
    std::function<QStringList()> changedElsewhere;
    // Opens the same session once more, for use on the thread that calls it. May be called on any thread, as
    // often as is wanted, while this session is in use and after its end; it shares nothing with it but a
    // password that is changed later. See Workspace::Again.
    std::function<EngineSession()> again;
    // Only on a server; see Workspace::ServerIdentity.
    std::function<QString()> serverIdentity = {};
};

} // namespace dao
