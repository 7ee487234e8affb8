#pragma once

#include "dao/base/Error.h"
#include <QString>

struct sqlite3;

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
    sqlite3* Get() const; // Kind::Closed
    // Whether the path that was opened still leads to the same file.
    bool IsInPlace() const;

    // The file that errors name from now on.
    void NameInErrors(const QString& path) { m_errorPath = path; }
    // The last failure, which has this code.
    Error MakeError(int code) const;

private:
    static QByteArray Identity(const QString& path);

    sqlite3* m_handle = nullptr;
    QString m_path;
    QByteArray m_identity; // of the file at the opening
    QString m_errorPath;
};

} // namespace dao::sqlite
