#pragma once

#include <QString>

// Keeps other programs away from what a file stands for. The system releases the lock when its holder ends,
// however it ends, so that neither a killed program nor a renamed machine leaves anything locked. The file
// remains.
class FileLock {
public:
    explicit FileLock(QString file);
    ~FileLock(); // unlocks
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    enum class Result {
        Locked,
        HeldByAnother,
        Failed // the file cannot be created or opened
    };
    // Does not wait.
    Result TryLock();

private:
    QString m_file;
    int m_handle = -1;
};
