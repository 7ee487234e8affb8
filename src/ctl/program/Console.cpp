#include "ctl/program/Console.h"

#include "core/texts/Errors.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

void WriteLine(FILE* stream, const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
}

} // namespace

void Console::Print(const QString& line)
{
    WriteLine(stdout, line);
}

void Console::PrintError(const QString& line)
{
    WriteLine(stderr, line);
}

void Console::Flush()
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
        throw Error(
            ErrorCode::General,
            QStringLiteral("The output cannot be written: %1").arg(QString::fromLocal8Bit(strerror(errno))));
}
