#include "core/settings/IniFile.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/TextIds.h"
#include "dao/base/FileAccess.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <QUrl>
#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace {

constexpr qint64 LargestFile = qint64{1024} * 1024; // bytes; a settings file has a few hundred
constexpr QLatin1String EncodedStart("@percent(");
constexpr QLatin1String EncodedEnd(")");

bool IsEncoded(const QString& value)
{
    return value.startsWith(EncodedStart) && value.endsWith(EncodedEnd);
}

QString Encode(const QString& value)
{
    const bool plain = value == value.trimmed() && !IsEncoded(value) &&
                       std::none_of(value.begin(), value.end(),
                                    [](QChar c) { return c.category() == QChar::Other_Control; });
    return plain ? value : EncodedStart + QString::fromLatin1(QUrl::toPercentEncoding(value)) + EncodedEnd;
}

QString Decode(const QString& value)
{
    if (!IsEncoded(value))
        return value;
    const qsizetype length = value.size() - EncodedStart.size() - EncodedEnd.size();
    return QUrl::fromPercentEncoding(value.mid(EncodedStart.size(), length).toUtf8());
}

bool Same(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

} // namespace

IniFile::IniFile(QString file, const IStringSource& strings) : m_file(std::move(file)), m_strings(strings) {}

std::optional<QString> IniFile::Read(const QString& section, const QString& key)
{
    Load();
    const qsizetype found = Find(section, key);
    if (found < 0)
        return std::nullopt;
    const QString& text = m_lines[found].text;
    return Decode(text.mid(text.indexOf(u'=') + 1).trimmed());
}

void IniFile::Write(const QString& section, const QList<Item>& items)
{
    Load();
    const QList<Line> before = m_lines;
    for (const Item& item : items)
        Set(m_lines, section, item, Find(section, item.key));
    try {
        Save(m_lines);
    } catch (...) {
        m_lines = before;
        throw;
    }
}

// Changes the line at `found`, or adds one at the end of the section, which is created if there is none.
void IniFile::Set(QList<Line>& lines, const QString& section, const Item& item, qsizetype found)
{
    const QString value = Encode(item.value);
    if (found >= 0) {
        QString& text = lines[found].text;
        text = text.left(text.indexOf(u'=') + 1) + value;
        return;
    }
    qsizetype last = lines.size() - 1;
    while (last >= 0 && (!Same(lines[last].section, section) || lines[last].text.trimmed().isEmpty()))
        --last;
    if (last < 0) {
        if (!lines.isEmpty())
            lines.append({QString(), lines.last().section, QString()});
        lines.append({u'[' + section + u']', section, QString()});
        last = lines.size() - 1;
    }
    lines.insert(last + 1, {item.key + u'=' + value, section, item.key});
}

std::optional<IniFile::Stamp> IniFile::FileStamp() const
{
    struct stat status = {};
    if (::stat(QFile::encodeName(m_file).constData(), &status) != 0) {
        if (errno == ENOENT)
            return std::nullopt;
        RaiseNotReadable(qt_error_string(errno));
    }
    if (S_ISDIR(status.st_mode))
        RaiseNotReadable(qt_error_string(EISDIR));
    if (!S_ISREG(status.st_mode) || status.st_size > LargestFile)
        throw Error(ErrorCode::General, FormatMessage(m_strings, CoreText::SettingsNotText, {m_file}));
    return Stamp{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

void IniFile::Load()
{
    const std::optional<Stamp> stamp = FileStamp();
    if (stamp == m_stamp)
        return;
    m_stamp.reset();
    m_lines.clear();
    if (!stamp)
        return;
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        RaiseNotReadable(file.errorString());
    Parse(file.readAll());
    m_stamp = stamp;
}

void IniFile::Parse(const QByteArray& bytes)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(bytes);
    if (decode.hasError() || text.contains(QChar(u'\0')))
        throw Error(ErrorCode::General, FormatMessage(m_strings, CoreText::SettingsNotText, {m_file}));

    QList<Line> lines;
    QString section;
    for (QString raw : text.split(u'\n')) {
        if (raw.endsWith(u'\r'))
            raw.chop(1);
        const QString line = raw.trimmed();
        QString key;
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            section = line.mid(1, line.size() - 2).trimmed();
        } else if (!line.isEmpty() && line[0] != u';' && line[0] != u'#') {
            const qsizetype equals = raw.indexOf(u'=');
            key = raw.left(equals).trimmed();
            if (equals < 0 || key.isEmpty())
                throw Error(ErrorCode::General,
                            FormatMessage(m_strings, CoreText::SettingsBadLine,
                                          {m_file, QString::number(lines.size() + 1), line}));
        }
        lines.append({raw, section, key});
    }
    if (lines.last().text.isEmpty())
        lines.removeLast();
    m_lines = std::move(lines);
}

qsizetype IniFile::Find(const QString& section, const QString& key) const
{
    for (qsizetype i = m_lines.size() - 1; i >= 0; --i)
        if (Same(m_lines[i].key, key) && Same(m_lines[i].section, section))
            return i;
    return -1;
}

void IniFile::Save(const QList<Line>& lines)
{
    dao::MakePrivateFolder(QFileInfo(m_file).absolutePath()); // its failure shows when the file is opened
    QSaveFile file(m_file);
    bool ok =
        file.open(QIODevice::WriteOnly) && (QFile::exists(m_file) || file.setPermissions(dao::OwnerOnly));
    for (const Line& line : lines)
        ok = ok && file.write(line.text.toUtf8() + '\n') >= 0;
    if (!ok || !dao::Commit(file))
        throw Error(ErrorCode::General,
                    FormatMessage(m_strings, CoreText::SettingsNotWritable, {m_file, file.errorString()}));
    m_stamp = FileStamp();
}

void IniFile::RaiseNotReadable(const QString& reason) const
{
    throw Error(ErrorCode::General,
                FormatMessage(m_strings, CoreText::SettingsNotReadable, {m_file, reason}));
}
