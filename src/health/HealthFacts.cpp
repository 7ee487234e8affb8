#include "health/HealthFacts.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "health/TextIds.h"

#include <QLocale>

namespace {

int TextOf(LinkStatus::State state)
{
    switch (state) {
    case LinkStatus::State::Closed:
        return HealthText::Closed;
    case LinkStatus::State::Connecting:
        return HealthText::Connecting;
    case LinkStatus::State::Ready:
        return HealthText::Ready;
    case LinkStatus::State::Silent:
        return HealthText::Silent;
    case LinkStatus::State::Lost:
        return HealthText::Lost;
    }
    return 0;
}

class Lines {
public:
    explicit Lines(const IStringSource& strings) : m_strings(strings) {}

    QString Text(int id) const { return m_strings.LoadString(id); }
    QString Text(int id, const QStringList& values) const { return FormatMessage(m_strings, id, values); }
    void Head(int id) { m_lines.append({Text(id), {}, true}); }
    void Add(int id, const QString& value) { m_lines.append({Text(id), value}); }
    QString Time(const QDateTime& time, int otherwise) const
    {
        return time.isValid() ? time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
                              : Text(otherwise);
    }
    QString Size(qint64 octets) const
    {
        return octets < 0 ? Text(HealthText::Unknown) : QLocale().formattedDataSize(octets);
    }
    QString Free(const SlowFacts::Disk& disk) const
    {
        return disk.total < 0 ? Text(HealthText::Unknown)
                              : Text(HealthText::FreeOf, {Size(disk.free), Size(disk.total)});
    }
    QList<HealthLine> Taken() const { return m_lines; }

private:
    const IStringSource& m_strings;
    QList<HealthLine> m_lines;
};

void AddRadio(Lines& lines, const HealthFacts& facts)
{
    lines.Head(HealthText::Radio);
    const QString state = lines.Text(TextOf(facts.link.state));
    lines.Add(HealthText::Link, facts.link.text.isEmpty() ? state : state + u' ' + facts.link.text);
    lines.Add(HealthText::Since, lines.Time(facts.linkSince, HealthText::Unknown));
    lines.Add(HealthText::LastHeard, lines.Time(facts.line.lastHeard, HealthText::Never));
    lines.Add(HealthText::Frames, lines.Text(HealthText::FramesOf, {QString::number(facts.line.received),
                                                                    QString::number(facts.line.sent),
                                                                    QString::number(facts.line.repeated)}));
    lines.Add(HealthText::Damaged, lines.Text(HealthText::DamagedOf, {QString::number(facts.line.damaged),
                                                                      QString::number(facts.line.noise)}));
    lines.Add(HealthText::Port,
              lines.Text(HealthText::PortOf, {facts.port, QString::number(facts.bitsPerSecond)}));
    lines.Add(HealthText::Adapter,
              facts.slow.adapter.isEmpty() ? lines.Text(HealthText::NoAdapter) : facts.slow.adapter);
}

void AddDatabase(Lines& lines, const HealthFacts& facts)
{
    lines.Head(HealthText::Database);
    lines.Add(HealthText::Engine, lines.Text(facts.isOnServer ? HealthText::Server : HealthText::Files));
    lines.Add(HealthText::Target, facts.target.isEmpty() ? lines.Text(HealthText::Unknown) : facts.target);
    lines.Add(HealthText::Size, lines.Size(facts.slow.databaseSize));
    lines.Add(HealthText::Operator,
              facts.operatorName.isEmpty() ? lines.Text(HealthText::Nobody) : facts.operatorName);
    lines.Add(HealthText::BackupIn,
              facts.backupFolder.isEmpty() ? lines.Text(HealthText::NoBackupFolder) : facts.backupFolder);
    lines.Add(HealthText::LastBackup, lines.Time(facts.slow.lastBackup, HealthText::NoBackup));
    lines.Add(HealthText::MayBackUp, lines.Text(facts.mayBackUp ? HealthText::Yes : HealthText::No));
    lines.Add(HealthText::Waiting, facts.waitingCause.isEmpty()
                                       ? QString::number(facts.waiting)
                                       : QString::number(facts.waiting) + u' ' + facts.waitingCause);
}

} // namespace

QList<HealthLine> HealthLines(const HealthFacts& facts, const IStringSource& strings)
{
    Lines lines(strings);
    AddRadio(lines, facts);
    AddDatabase(lines, facts);
    lines.Head(HealthText::Computer);
    if (facts.slowSince.isValid())
        lines.Add(HealthText::NoAnswer, lines.Time(facts.slowSince, HealthText::Unknown));
    lines.Add(HealthText::DatabaseDisk, lines.Free(facts.slow.databaseDisk));
    lines.Add(HealthText::StateDisk, lines.Free(facts.slow.stateDisk));
    lines.Add(HealthText::Sound, lines.Text(facts.hasSound ? HealthText::Yes : HealthText::NoSound));
    lines.Add(HealthText::Versions, facts.versions.join(QStringLiteral(", ")));
    return lines.Taken();
}

QString HealthReport(const QList<HealthLine>& lines)
{
    QString text;
    for (const HealthLine& line : lines)
        text += line.isHeading ? line.item + u'\n'
                               : QStringLiteral("  %1: %2\n").arg(line.item, line.value.simplified());
    return text;
}
