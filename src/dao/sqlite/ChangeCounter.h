#pragma once

#include "dao/sqlite/OwnChanges.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>

namespace dao::sqlite {

class Connection;

// Tells what other sessions change in the files of a connection. The files count every change to the tables
// that consoles show; what this session has changed itself is counted beside it and taken off. So
// is what the other sessions of its logon have changed. Outlived by its connection, and made once for it.
class ChangeCounter {
public:
    ChangeCounter(Connection& connection, std::shared_ptr<OwnChanges> family);
    ~ChangeCounter();
    ChangeCounter(const ChangeCounter&) = delete;
    ChangeCounter& operator=(const ChangeCounter&) = delete;

    // Tells the other sessions of the logon from now on what this one changes.
    void TellFamily();

    // Tables that other sessions have changed since the last call, or since the beginning. Asked often, so it
    // does not wait for a lock: Kind::Locked at once.
    QStringList ChangedElsewhere();

private:
    QHash<QString, qlonglong> ReadForeign() const;

    Connection& m_connection;
    std::shared_ptr<OwnChanges> m_family;
    int m_session;
    QHash<QString, qlonglong> m_seen; // changes by others, by table
};

} // namespace dao::sqlite
