#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

// A file with the fuzzer's octets in a folder of the process's own, for what reads files.
class ScratchFile {
public:
    QString Name() const { return m_folder.filePath(QStringLiteral("file")); }
    void Fill(const QByteArray& bytes)
    {
        QFile file(Name());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no scratch file");
    }

private:
    QTemporaryDir m_folder{QStringLiteral("/dev/shm/veltorkyn-fuzz-XXXXXX")};
};
