#include "addressing/CreateAddressing.h"
#include "core/texts/Errors.h"
#include "ctl/files/InputLine.h"
#include "ctl/files/OwnNumberingFile.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"
#include "numbering/FleetPlanFile.h"
#include "radio/base/AddressingText.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

// The models of the ANN numbering, in the order of their indexes.
const QStringList Models{"SMALL", "MEDIUM", "LARGE", "EXTRA_LARGE"};

// Hands what the options say to the conversion.
class OptionSource : public IMpt1343FleetConfigSource, public IActionetConfigSource {
public:
    std::vector<FleetConfig> fleets;
    ActionetConfig actionet;

    int NumberOfFleets() override { return static_cast<int>(fleets.size()); }
    void RetreiveFleetConfig(std::span<FleetConfig> filled) override
    {
        std::copy(fleets.begin(), fleets.end(), filled.begin());
    }
    void RetreiveActionetConfig(ActionetConfig& config) override { config = actionet; }
};

// A JSON string with its quotes. Objects are put together by hand since QJsonObject sorts its names.
QString Quoted(const std::string& text)
{
    const QByteArray list =
        QJsonDocument(QJsonArray{QString::fromStdString(text)}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

class Dialler {
public:
    Dialler(const MptAddressing& addressing, const IStringSource& strings)
        : m_addressing(addressing),
          m_strings(strings)
    {
    }

    void Dial(const std::string& text) const
    {
        try {
            const RadioAddress address = m_addressing.DialToAddress(text);
            Console::Print(
                QStringLiteral(
                    R"({"dial":%1,"prefix":%2,"ident":%3,"kind":%4,"digits":%5,"canonical":%6,"short":%7})")
                    .arg(Quoted(text), QString::number(address.prefix), QString::number(address.ident),
                         QString::number(static_cast<int>(address.kind)), Quoted(address.digits),
                         Quoted(m_addressing.AddressToDial(address)),
                         Quoted(m_addressing.ShortDial(address))));
        } catch (const AddressingError& error) {
            Console::Print(QStringLiteral(R"({"dial":%1,"error":%2})")
                               .arg(Quoted(text),
                                    Quoted(AddressingFailure(error, m_strings).Description().toStdString())));
        }
        Console::Flush();
    }

private:
    const MptAddressing& m_addressing;
    const IStringSource& m_strings;
};

int NumberOf(const Request& request, const QString& option)
{
    bool whole = false;
    const int number = request.options.value(option).toInt(&whole);
    if (!whole)
        throw UsageError(
            QStringLiteral("--%1: \"%2\" is not a whole number").arg(option, request.options.value(option)));
    return number;
}

void RefuseOptions(const Request& request, const QStringList& options, const QString& code)
{
    for (const QString& option : options)
        if (request.options.isSet(option))
            throw UsageError(QStringLiteral("--%1 is not an option of the numbering %2").arg(option, code));
}

void Configure(MptAddressing& addressing, const Request& request)
{
    OptionSource source;
    if (addressing.NumberingCode() == "ACTIONET") {
        RefuseOptions(request, {"plan"}, "ACTIONET");
        source.actionet = {.FPP = NumberOf(request, "fpp"),
                           .MEP = NumberOf(request, "mep"),
                           .model = static_cast<int>(Models.indexOf(request.options.value("model")))};
        if (source.actionet.model < 0)
            throw UsageError(QStringLiteral("--model is one of %1").arg(Models.join(", ")));
    } else {
        RefuseOptions(request, {"model", "fpp", "mep"}, "MPT1343");
        if (request.options.isSet("plan"))
            for (const FleetPlanRow& row : ReadFleetPlan(request.options.value("plan"), request.strings))
                source.fleets.push_back(row.record.fleet);
    }
    try {
        addressing.SetConfigSource(source, source);
    } catch (const AddressingError& error) {
        throw UsageError(AddressingFailure(error, request.strings).Description());
    }
}

std::unique_ptr<MptAddressing> MakeAddressing(const Request& request)
{
    const QString code = request.options.value("numbering");
    auto addressing = CreateAddressing(code.toStdString());
    if (!addressing)
        throw UsageError(
            QStringLiteral("--numbering: \"%1\" is not known; MPT1343 and ACTIONET are").arg(code));
    Configure(*addressing, request);
    if (request.options.isSet("own"))
        addressing->SetRadioNumbering(ReadOwnNumbering(request.options.value("own")));
    for (const AddressingError& warning : addressing->Warnings())
        Console::PrintError(QStringLiteral("veltorkynctl: warning: %1")
                                .arg(AddressingFailure(warning, request.strings).Description()));
    return addressing;
}

int Run(const Request& request)
{
    const auto addressing = MakeAddressing(request);
    const Dialler dialler(*addressing, request.strings);
    for (const QString& text : request.arguments)
        dialler.Dial(text.toStdString());
    if (request.arguments.isEmpty())
        while (const auto line = ReadInputLine())
            dialler.Dial(*line);
    return exitOk;
}

constexpr auto Help =
    R"(Tells which radio, group or telephone each dialled TEXT means, and how that address is
written. Without a TEXT it reads them from standard input, one a line. A TEXT that begins with a
hyphen has to come after "--".

For each text one JSON object is printed on a line of its own:
  {"dial":TEXT,"prefix":0,"ident":3,"kind":0,"digits":"","canonical":"200200121","short":"21"}
  {"dial":TEXT,"error":"Number is empty."}
kind is 0 for a radio, a group or a special ident, 1 for a telephone number behind gateway 8101
(public) or 8102 (PABX), which then is in digits. short is the shortest text for the own radio.
A text in error is an answer like any other: the exit code stays 0.

PLAN.csv is the fleet plan, UTF-8, its first line naming the columns: type (units or groups),
digits (2 or 3), prefix (0..127), base_ident, max_ident, fleet_name, notes (the last two may be
missing). Without it the plan is empty.

The numbering ACTIONET (ANN) has no plan but a model, SMALL, MEDIUM, LARGE or EXTRA_LARGE, and
the parameters FPP and MEP, each 0 to 10 and together at most 10.

OWN.json is what the own radio would report: an object with the whole numbers prefix, ident,
unitBaseIdent, unitMaxIdent, groupBaseIdent, groupMaxIdent, unitDigits, groupDigits; a fleet that
it has not got has base ident 0. Without it forms that need the own number are errors.)";

} // namespace

Command DialCommand()
{
    QCommandLineOption numbering("numbering", "the numbering: MPT1343 (default) or ACTIONET", "CODE",
                                 "MPT1343");
    return {.words = "dial",
            .synopsis = "[--numbering MPT1343] [--plan PLAN.csv] [--own OWN.json] [TEXT...]\n"
                        "       veltorkynctl dial --numbering ACTIONET --model MODEL [--fpp N] [--mep N] "
                        "[--own OWN.json] [TEXT...]",
            .summary = "what a dialled text means, and back",
            .help = Help,
            .options = {numbering, QCommandLineOption("plan", "the fleet plan", "PLAN.csv"),
                        QCommandLineOption("model", "the numbering model of ACTIONET", "MODEL"),
                        QCommandLineOption("fpp", "FPP of ACTIONET (default: 10)", "N", "10"),
                        QCommandLineOption("mep", "MEP of ACTIONET (default: 0)", "N", "0"),
                        QCommandLineOption("own", "the own radio's numbering", "OWN.json")},
            .fewestArguments = 0,
            .mostArguments = -1,
            .run = Run};
}
