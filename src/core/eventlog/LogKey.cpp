#include "core/eventlog/LogKey.h"

#include "core/texts/Errors.h"
#include "dao/base/FileAccess.h"

#include <QDir>
#include <QFile>
#include <QUuid>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int KeySize = crypto_generichash_KEYBYTES;
constexpr qint64 MostRead = 200;

[[noreturn]] void Fail(const QString& file, const QString& reason)
{
    throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(file, reason));
}

[[noreturn]] void FailBySystem(const QString& file)
{
    Fail(file, QString::fromLocal8Bit(strerror(errno)));
}

void RequireSodium(const QString& file)
{
    if (sodium_init() < 0)
        Fail(file, QStringLiteral("libsodium cannot be initialised"));
}

void RequirePrivate(int handle, const QString& file)
{
    struct stat status = {};
    if (fstat(handle, &status) != 0)
        FailBySystem(file);
    if (!S_ISREG(status.st_mode) || status.st_uid != geteuid() || (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        Fail(file, QStringLiteral("other accounts may read or change it (chmod 600, owned by this account)"));
}

QByteArray Parse(const QByteArray& text, const QString& file)
{
    const QByteArray digits = text.trimmed();
    const QByteArray key = QByteArray::fromHex(digits);
    if (key.size() != KeySize || key.toHex() != digits)
        Fail(file, QStringLiteral("this is no key of a log"));
    return key;
}

// Complete before it has its name, which is never taken from another one.
void Make(const QString& file)
{
    QByteArray key(KeySize, Qt::Uninitialized);
    randombytes_buf(key.data(), static_cast<size_t>(key.size()));
    const QByteArray line = key.toHex() + '\n';
    const QByteArray name = QFile::encodeName(file);
    const QByteArray made = name + '.' + QUuid::createUuid().toByteArray(QUuid::Id128).left(8);
    const int handle = open(made.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (handle < 0)
        FailBySystem(file);
    const bool written = write(handle, line.constData(), static_cast<size_t>(line.size())) == line.size() &&
                         fsync(handle) == 0;
    const bool named = written && (link(made.constData(), name.constData()) == 0 || errno == EEXIST);
    const int reason = errno;
    close(handle);
    unlink(made.constData());
    errno = reason;
    if (!named)
        FailBySystem(file);
}

} // namespace

QString LogKey::FileIn(const QString& folder)
{
    return QDir(folder).filePath(QStringLiteral("log-key"));
}

QByteArray LogKey::Own(const QString& folder)
{
    const QString file = FileIn(folder);
    RequireSodium(file);
    dao::MakePrivateFolder(folder);
    const QByteArray name = QFile::encodeName(file);
    int handle = open(name.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (handle < 0 && errno == ENOENT) {
        Make(file);
        handle = open(name.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    }
    if (handle < 0)
        FailBySystem(file);
    QFile reader;
    reader.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    RequirePrivate(handle, file);
    return Parse(reader.read(MostRead), file);
}

QByteArray LogKey::Read(const QString& file)
{
    RequireSodium(file);
    QFile reader(file);
    if (!reader.open(QIODevice::ReadOnly))
        Fail(file, reader.errorString());
    return Parse(reader.read(MostRead), file);
}
