// Tables as files: CSV, fleet plans, and what a radio would say of its numbering.

#include "core/texts/CsvLine.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "ctl/files/OwnNumberingFile.h"
#include "exchange/CsvReader.h"
#include "exchange/CsvTable.h"
#include "exchange/InputFile.h"
#include "fuzz/Input.h"
#include "fuzz/ScratchFile.h"
#include "numbering/FleetPlanFile.h"

namespace {

struct AnyText : IStringSource {
    QString LoadString(int id) const override { return QString::number(id) + QStringLiteral(" #01 #02 #03"); }
};

template <typename Read> void Try(Read read)
{
    try {
        read();
    } catch (const Error& error) {
        MUST_HOLD(!error.Description().isEmpty());
    }
}

// Written again, a table holds the same; a record of nothing but blanks is a blank line.
void CheckCsv(ScratchFile& file)
{
    const AnyText strings;
    const QList<CsvRecord> records = ReadCsv(file.Name(), ReadInputFile(file.Name()), strings);
    QString again = CsvLine({QStringLiteral("heading")});
    for (const CsvRecord& record : records) {
        MUST_HOLD(record.line >= 1 && !record.fields.isEmpty());
        again += CsvLine(record.fields);
    }
    const QList<CsvRecord> read = ReadCsv(file.Name(), again.toUtf8(), strings);
    MUST_HOLD(read.size() == records.size() + 1);
    for (qsizetype i = 0; i < records.size(); ++i)
        MUST_HOLD(read[i + 1].fields == records[i].fields);
}

void CheckFleetPlan(ScratchFile& file)
{
    const AnyText strings;
    std::vector<FleetRecord> plan;
    for (const FleetPlanRow& row : ReadFleetPlan(file.Name(), strings))
        plan.push_back(row.record);
    const QString again = FormatFleetPlan(plan);
    ScratchFile second;
    second.Fill(again.toUtf8());
    const std::vector<FleetPlanRow> read = ReadFleetPlan(second.Name(), strings);
    MUST_HOLD(read.size() == plan.size());
    for (std::size_t i = 0; i < plan.size(); ++i)
        MUST_HOLD(read[i].record.fleet == plan[i].fleet && read[i].record.name == plan[i].name &&
                  read[i].record.notes == plan[i].notes);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static ScratchFile file;
    file.Fill({reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)});
    Try([] { CheckCsv(file); });
    Try([] {
        CsvTable::Read(file.Name(),
                       {.needed = {QStringLiteral("number")}, .optional = {QStringLiteral("text")}},
                       AnyText());
    });
    Try([] { CheckFleetPlan(file); });
    Try([] { ReadOwnNumbering(file.Name()); });
    return 0;
}
