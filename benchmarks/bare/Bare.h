#pragma once

#include <QString>
#include <memory>

// The work that is compared, done with an engine's C interface alone, on a database that is there.
class Bare {
public:
    virtual ~Bare() = default;

    // A log record as the console stores it, in a transaction of its own.
    virtual void Insert(qint64 milliseconds, const QByteArray& id, qlonglong number) = 0;
    // What is shown of the log since then, at most so many lines; what comes back is a sum of what was read.
    virtual qint64 Reload(qint64 since, int lines) = 0;
    // The newest records with this word, which has no letter but a to z, at most so many; how many were
    // found.
    virtual int Search(const QByteArray& word, int most) = 0;
    // Every entry of the directory as the window shows it, in the order of callsigns; the octets read.
    virtual qint64 ReadDirectory() = 0;
};

std::unique_ptr<Bare> MakeBare(const QString& database);
