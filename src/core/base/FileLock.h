#pragma once

#include <QString>

// Keeps other programs from what a file stands for. The system takes the lock away when its holder ends,
// however it ends, so that a program that was killed or a machine whose name has changed locks nothing. The
// file stays.
class FileLock {
public:
    explicit FileLock(QString file);
    ~FileLock(); // unlocks
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    enum class Result {
        Locked,
        HeldByAnother,
        Failed // the file cannot be made or opened
    };
    // Does not wait.
    Result TryLock();

private:
    QString m_file;
    int m_handle = -1;
};
