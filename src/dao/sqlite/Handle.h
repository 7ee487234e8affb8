#pragma once

#include "dao/base/Error.h"
#include <QElapsedTimer>
#include <QString>
#include <chrono>
#include <unordered_set>

struct sqlite3;
struct sqlite3_stmt;

namespace dao::sqlite {

// SQLite's own handle of an open file. Shared by a connection and all that it handed out; once it is closed,
// every use raises Kind::Closed.
class Handle {
public:
    explicit Handle(const QString& path) : m_errorPath(path) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { Close(); }

    // `flags` are those of sqlite3_open_v2. Raises a Kind with the path.
    void Open(const QString& path, int flags);
    // Closes the files whatever statements are still in use; an open transaction is rolled back.
    void Close() noexcept;
    bool IsOpen() const { return m_handle != nullptr; }
    sqlite3* Get() const; // Kind::Closed; Kind::Busy within a wait for a lock
    // How long each use waits for another program's lock, as the thread's Patience does.
    void SetLockTimeout(std::chrono::milliseconds timeout);
    void WaitForLocks(bool wait) { m_waitsForLocks = wait; }
    // A statement that was prepared on it, which Close ends; the engine has others of its own, which it ends
    // itself.
    void Add(sqlite3_stmt* statement) const { m_statements.insert(statement); }
    void End(sqlite3_stmt* statement) const noexcept;
    // Whether the path that was opened still leads to the same file.
    bool IsInPlace() const;

    // The file that errors name from now on.
    void NameInErrors(const QString& path) { m_errorPath = path; }
    // The last failure, which has this code.
    Error MakeError(int code) const;

private:
    static QByteArray Identity(const QString& path);

    static int AwaitLock(void* handle, int calls);

    sqlite3* m_handle = nullptr;
    mutable std::unordered_set<sqlite3_stmt*> m_statements;
    std::chrono::milliseconds m_lockTimeout{0};
    QElapsedTimer m_locked; // since the wait for the present lock began
    bool m_waitsForLocks = true;
    bool m_waiting = false;
    mutable bool m_givenUp = false; // the wait that the next failure is about
    QString m_path;
    QByteArray m_identity; // of the file at the opening
    QString m_errorPath;
};

} // namespace dao::sqlite
