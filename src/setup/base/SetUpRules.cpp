#include "setup/base/SetUpRules.h"

#include "addressing/CreateAddressing.h"
#include "core/logon/FirstRunChoice.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "setup/base/TextIds.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <algorithm>

namespace SetUpRules {

namespace {

constexpr int LongestName = 30;
constexpr int LongestNotes = 200;
constexpr int FirstPrefix1343 = 200;

// The fleets alone, for an example of what is dialled.
class Plan : public IMpt1343FleetConfigSource, public IActionetConfigSource {
public:
    explicit Plan(const std::vector<FleetEntry>& fleets)
    {
        for (const FleetEntry& fleet : fleets)
            m_rows.push_back(ToRecord(fleet).fleet);
    }
    int NumberOfFleets() override { return static_cast<int>(m_rows.size()); }
    void RetreiveFleetConfig(std::span<FleetConfig> fleets) override
    {
        std::copy(m_rows.begin(), m_rows.end(), fleets.begin());
    }
    void RetreiveActionetConfig(ActionetConfig&) override {}

private:
    std::vector<FleetConfig> m_rows;
};

std::optional<FirstRunProblem> CheckPlace(const dao::Location& location)
{
    FirstRunChoice choice;
    choice.create = false;
    choice.location = location;
    return CheckFirstRun(choice);
}

FleetEntry Reported(FleetType type, int prefix, int base, int last, const IStringSource& strings)
{
    return EntryOf(type, QString::number(prefix + FirstPrefix1343), FleetNumberFrom(QString::number(base)),
                   FleetSizeFrom(QString::number(base), QString::number(last)), strings);
}

} // namespace

QString ProblemOf(const ServerEntry& entry, const IStringSource& strings)
{
    if (entry.server.isEmpty())
        return strings.LoadString(SetUpText::ServerMissing);
    static const QRegularExpression hosts(QStringLiteral("^[A-Za-z0-9._:,\\[\\]-]+$"));
    if (!hosts.match(entry.server).hasMatch())
        return FormatMessage(strings, SetUpText::ServerWrong, {entry.server});
    if (entry.name.isEmpty())
        return strings.LoadString(SetUpText::ServerNameMissing);
    QFile certificate(entry.certificate);
    if (!QFileInfo(entry.certificate).isFile() || !certificate.open(QIODevice::ReadOnly))
        return FormatMessage(strings, SetUpText::CertificateUnreadable, {entry.certificate});
    return {};
}

QString TargetOf(const ServerEntry& entry)
{
    const auto encoded = [](const QString& text, const char* kept) {
        return QString::fromLatin1(QUrl::toPercentEncoding(text, kept));
    };
    return QStringLiteral("postgresql://%1/%2?sslmode=verify-full&sslrootcert=%3")
        .arg(entry.server, encoded(entry.name, ""), encoded(entry.certificate, "/"));
}

QString ProblemOfNewFile(const QString& file, const IStringSource& strings)
{
    const dao::Location location = dao::LocationOf(file);
    if (const auto problem = CheckPlace(location))
        return strings.LoadString(problem->textId);
    for (const QString& path : {location.database, location.workgroup})
        if (QFileInfo::exists(path))
            return FormatMessage(strings, SetUpText::FileThere, {path});
    return {};
}

QString ProblemOfExistingFile(const QString& file, const IStringSource& strings)
{
    const dao::Location location = dao::LocationOf(file);
    if (const auto problem = CheckPlace(location))
        return strings.LoadString(problem->textId);
    for (const QString& path : {location.database, location.workgroup})
        if (!QFileInfo(path).isFile())
            return FormatMessage(strings, SetUpText::NoFileThere, {path});
    return {};
}

QString ProblemOfAccount(const QString& user, const QString& password, const QString& repeated,
                         const IStringSource& strings)
{
    FirstRunChoice choice;
    choice.location = {QStringLiteral("database"), QStringLiteral("accounts")}; // checked before
    choice.userName = user;
    choice.password = password;
    choice.repeated = repeated;
    const auto problem = CheckFirstRun(choice);
    return problem ? strings.LoadString(problem->textId) : QString();
}

FleetEntry EntryOf(FleetType type, const QString& prefix, const QString& number, const QString& size,
                   const IStringSource& strings)
{
    const QString base = BaseIdentFrom(number);
    const int name = type == FleetType::Units ? SetUpText::Units : SetUpText::Groups;
    return {.name = strings.LoadString(name),
            .type = type,
            .prefix1343 = prefix,
            .fleetNumber = number,
            .fleetSize = size,
            .digits = NeedsThreeDigits(type, base, size) ? 3 : 2,
            .notes = {}};
}

std::vector<FleetEntry> EntriesOf(const RadioNumbering& numbering, const IStringSource& strings)
{
    std::vector<FleetEntry> entries;
    if (numbering.unitBaseIdent != 0) {
        entries.push_back(Reported(FleetType::Units, numbering.prefix, numbering.unitBaseIdent,
                                   numbering.unitMaxIdent, strings));
        entries.back().digits = numbering.unitDigits;
    }
    if (numbering.groupBaseIdent != 0) {
        entries.push_back(Reported(FleetType::Groups, numbering.prefix, numbering.groupBaseIdent,
                                   numbering.groupMaxIdent, strings));
        entries.back().digits = numbering.groupDigits;
    }
    return entries;
}

QString ProblemOf(const std::vector<FleetEntry>& fleets, const IStringSource& strings)
{
    FleetPlanContext context{{}, LongestName, LongestNotes};
    for (const FleetEntry& fleet : fleets) {
        if (const auto refusal = CheckFleetEntry(fleet, context, strings))
            return QStringLiteral("%1: %2").arg(fleet.name, refusal->text);
        context.others.push_back(ToRecord(fleet));
    }
    return fleets.empty() ? strings.LoadString(SetUpText::UnitsMissing) : QString();
}

QString ExampleOf(const std::vector<FleetEntry>& fleets, const IStringSource& strings)
{
    Plan plan(fleets);
    const auto addressing = CreateAddressing("MPT1343");
    addressing->SetConfigSource(plan, plan);
    QStringList lines;
    for (const FleetEntry& entry : fleets) {
        const FleetConfig fleet = ToRecord(entry).fleet;
        const auto dialled = [&](int ident) {
            return QString::fromStdString(
                addressing->AddressToDial({.prefix = fleet.prefix, .ident = ident}));
        };
        lines.append(FormatMessage(strings, SetUpText::Example,
                                   {entry.name, dialled(fleet.baseIdent), dialled(fleet.maxIdent)}));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace SetUpRules
