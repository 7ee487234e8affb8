#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace dao::sqlite {

class Connection;

// Tells what other sessions change in the files of a connection. The files count every change to the tables
// that consoles show; what this session has changed itself is counted beside it and taken off. Outlived by
// its connection, and made once for it.
class ChangeCounter {
public:
    explicit ChangeCounter(Connection& connection);

    // Tables that other sessions have changed since the last call, or since the beginning. Asked often, so it
    // does not wait for a lock: Kind::Locked at once.
    QStringList ChangedElsewhere();

private:
    QHash<QString, qlonglong> ReadForeign() const;

    Connection& m_connection;
    QHash<QString, qlonglong> m_seen; // changes by others, by table
};

} // namespace dao::sqlite
