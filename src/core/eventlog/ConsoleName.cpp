#include "core/eventlog/ConsoleName.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSysInfo>
#include <QUuid>

namespace {

constexpr int HostSize = 40;

QString NewIdentity()
{
    return QUuid::createUuid().toString(QUuid::Id128).left(8);
}

QString Read(const QString& name)
{
    static const QRegularExpression form(QStringLiteral("^[0-9a-f]{8}$"));
    QFile file(name);
    const QString text =
        file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.read(100)).trimmed() : QString();
    return form.match(text).hasMatch() ? text : QString();
}

// The first of several consoles makes it: renaming overwrites nothing.
QString Identity(const QString& folder)
{
    if (folder.isEmpty())
        return NewIdentity();
    const QString name = QDir(folder).filePath(QStringLiteral("console-identity"));
    if (const QString known = Read(name); !known.isEmpty())
        return known;
    const QString made = NewIdentity();
    QFile file(name + u'.' + made);
    const bool written = file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
                         file.write(made.toLatin1() + '\n') > 0 && file.flush();
    file.close();
    if (!written || !file.rename(name))
        file.remove();
    const QString known = Read(name);
    return known.isEmpty() ? made : known;
}

} // namespace

QString ConsoleName(const QString& folder, int number)
{
    return QStringLiteral("%1-%2-%3")
        .arg(QSysInfo::machineHostName().left(HostSize), Identity(folder), QString::number(number));
}
