#include "exchange/DirectoryImport.h"

#include "addressing/CreateAddressing.h"
#include "core/session/Registry.h"
#include "core/texts/CsvLine.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/Validation.h"
#include "dao/base/TextMatch.h"
#include "dao/tables/RegroupTable.h"
#include "exchange/TextIds.h"
#include "radio/base/AddressingText.h"
#include "radio/facade/FleetDataSource.h"

namespace {

enum Field { Type, Callsign, Ident, Name, Note, Dynamic, Position };

const QString Individual = QStringLiteral("individual");
const QString Talkgroup = QStringLiteral("talkgroup");
const QString Yes = QStringLiteral("yes");
const QString No = QStringLiteral("no");

// As a line of a file.
QStringList FieldsOf(const dao::AddressRecord& entry)
{
    const bool individual = entry.kind == dao::EntryKind::Individual;
    return {individual ? Individual : Talkgroup,
            entry.callsign,
            entry.ident,
            entry.name,
            entry.note,
            entry.dynamic ? Yes : No,
            individual ? QString() : QString::number(entry.position)};
}

} // namespace

CsvTable::Columns DirectoryImport::Columns()
{
    return {.needed = {"type", "callsign", "ident", "name", "note", "dynamic", "position"}, .optional = {}};
}

QString DirectoryImport::Text(dao::Database& database, int& count)
{
    QString text = CsvLine(Columns().needed);
    count = 0;
    for (const dao::EntryKind kind : {dao::EntryKind::Individual, dao::EntryKind::Talkgroup})
        for (auto rows = dao::AddressTable::OpenSnapshot(database, kind); !rows->Eof();
             rows->MoveNext(), ++count)
            text += CsvLine(FieldsOf(dao::AddressTable::Read(*rows)));
    return text;
}

std::unique_ptr<MptAddressing> DirectoryImport::AddressingOf(IDbSession& session,
                                                             const IStringSource& strings)
{
    FleetDataSource source(session, strings);
    const QString code = RegistryGet(session, "subscriber_numbering", "MPT1343");
    auto addressing = CreateAddressing(code.toStdString());
    try {
        if (addressing)
            addressing->SetConfigSource(source, source);
        return addressing;
    } catch (const std::exception&) {
        return nullptr;
    }
}

DirectoryImport::DirectoryImport(dao::Database& database, CsvTable table,
                                 std::unique_ptr<MptAddressing> addressing, const IStringSource& strings)
    : m_database(database),
      m_table(std::move(table)),
      m_addressing(std::move(addressing)),
      m_strings(strings)
{
}

QString DirectoryImport::Notice() const
{
    return m_addressing ? QString() : m_strings.LoadString(ExchangeText::AddressesNotChecked);
}

// The address of each line's entry may pass to another line's, so all are announced before the first is
// checked.
std::vector<ImportLine> DirectoryImport::Check()
{
    ReadDirectory();
    for (const CsvTable::Row& row : m_table.Rows())
        Announce(row.fields);
    std::vector<ImportLine> lines;
    for (const CsvTable::Row& row : m_table.Rows())
        lines.push_back(CheckRow(row));
    return lines;
}

void DirectoryImport::ReadDirectory()
{
    QHash<qint32, bool> regrouped;
    for (auto rows = dao::RegroupTable::OpenSnapshot(m_database); !rows->Eof(); rows->MoveNext()) {
        const dao::RegroupRecord record = dao::RegroupTable::Read(*rows);
        regrouped[record.groupId] = true;
        regrouped[record.memberId] = true;
    }
    for (const dao::EntryKind kind : {dao::EntryKind::Individual, dao::EntryKind::Talkgroup}) {
        for (auto rows = dao::AddressTable::OpenSnapshot(m_database, kind); !rows->Eof(); rows->MoveNext()) {
            Known known{.entry = dao::AddressTable::Read(*rows)};
            known.regrouped = regrouped.contains(known.entry.id);
            const QString key = dao::Fold(known.entry.callsign);
            m_identOwner.insert(known.entry.ident, key);
            m_known.insert(key, known);
        }
    }
}

void DirectoryImport::Announce(const QStringList& fields)
{
    dao::AddressRecord entry;
    if (fields.isEmpty() || !Prepare(fields, entry).isEmpty())
        return;
    const auto known = m_known.constFind(dao::Fold(entry.callsign));
    if (known != m_known.constEnd() && known->entry.kind == entry.kind && known->entry.ident != entry.ident)
        m_identOwner.remove(known->entry.ident);
}

ImportLine DirectoryImport::CheckRow(const CsvTable::Row& row)
{
    ImportLine line{row.line, row.fields.value(Callsign).trimmed(), ImportOutcome::Refused, {}};
    dao::AddressRecord entry;
    line.reason = row.fields.isEmpty() ? m_strings.LoadString(ExchangeText::OtherFieldCount)
                                       : Prepare(row.fields, entry);
    if (line.reason.isEmpty())
        line.reason = CheckBesideDirectory(entry);
    if (!line.reason.isEmpty())
        return line;
    const QString key = dao::Fold(entry.callsign);
    m_identOwner.insert(entry.ident, key);
    m_seen.insert(key, true);
    const auto known = m_known.constFind(key);
    if (known == m_known.constEnd())
        line.outcome = ImportOutcome::Added;
    else if (FieldsOf(known->entry) == FieldsOf(entry))
        line.outcome = ImportOutcome::Unchanged;
    else
        line.outcome = ImportOutcome::Changed;
    if (line.outcome != ImportOutcome::Unchanged)
        m_entries.push_back(entry);
    return line;
}

// The entry of a line as it would be stored, its address in its canonical form.
QString DirectoryImport::Prepare(const QStringList& fields, dao::AddressRecord& entry) const
{
    QString problem = Parse(fields, entry);
    if (problem.isEmpty())
        problem = CheckFields(entry);
    if (problem.isEmpty())
        problem = CompleteIdent(entry.ident);
    return problem;
}

QString DirectoryImport::Parse(const QStringList& fields, dao::AddressRecord& entry) const
{
    const QString type = fields[Type].trimmed().toLower();
    if (type != Individual && type != Talkgroup)
        return FormatMessage(m_strings, ExchangeText::UnknownType, {fields[Type]});
    const QString dynamic = fields[Dynamic].trimmed().toLower();
    if (dynamic != Yes && dynamic != No)
        return FormatMessage(m_strings, ExchangeText::NotYesOrNo,
                             {Columns().needed[Dynamic], fields[Dynamic]});
    entry.kind = type == Individual ? dao::EntryKind::Individual : dao::EntryKind::Talkgroup;
    entry.callsign = fields[Callsign].trimmed();
    entry.ident = fields[Ident].trimmed();
    entry.note = fields[Note];
    entry.dynamic = dynamic == Yes;
    if (entry.kind == dao::EntryKind::Individual) {
        entry.name = fields[Name].trimmed();
        return {};
    }
    bool isNumber = false;
    entry.position = fields[Position].trimmed().toInt(&isNumber);
    if (!isNumber || entry.position < 1 || entry.position > dao::AddressTable::LastPosition)
        return FormatMessage(m_strings, ExchangeText::BadPosition, {fields[Position]});
    return {};
}

QString DirectoryImport::TooLong(const QString& field, const QString& text) const
{
    const int longest = m_database.FieldSize(dao::AddressTable::Table, field);
    return text.toUcs4().size() <= longest
               ? QString()
               : FormatMessage(m_strings, ExchangeText::TooLong, {field, QString::number(longest)});
}

QString DirectoryImport::CheckFields(const dao::AddressRecord& entry) const
{
    for (const int rule : {ProblemOfCallsign(entry), ProblemOfName(entry)})
        if (rule != 0)
            return m_strings.LoadString(rule);
    for (const auto& [field, text] : {std::pair(dao::AddressTable::NameField, entry.name),
                                      std::pair(dao::AddressTable::NoteField, entry.note),
                                      std::pair(dao::AddressTable::IdentField, entry.ident)}) {
        const QString problem = TooLong(field, text);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString DirectoryImport::CompleteIdent(QString& ident) const
{
    if (ident.isEmpty())
        return m_strings.LoadString(ExchangeText::IdentEmpty);
    if (!m_addressing)
        return {};
    try {
        ident = QString::fromStdString(
            m_addressing->AddressToDial(m_addressing->DialToAddress(ident.toStdString())));
        return {};
    } catch (const AddressingError& failure) {
        return FormatMessage(m_strings, ExchangeText::BadIdent,
                             {ident, AddressingFailure(failure, m_strings).Description()});
    }
}

QString DirectoryImport::CheckBesideDirectory(const dao::AddressRecord& entry) const
{
    const QString key = dao::Fold(entry.callsign);
    if (m_seen.contains(key))
        return FormatMessage(m_strings, ExchangeText::CallsignTwice, {entry.callsign});
    const QString owner = m_identOwner.value(entry.ident);
    if (!owner.isEmpty() && owner != key)
        return FormatMessage(m_strings, ExchangeText::IdentTaken, {entry.ident});
    const auto known = m_known.constFind(key);
    if (known == m_known.constEnd())
        return {};
    if (known->entry.kind != entry.kind)
        return FormatMessage(m_strings, ExchangeText::OtherType, {entry.callsign});
    const bool keyChanged = known->entry.callsign != entry.callsign || known->entry.ident != entry.ident ||
                            known->entry.dynamic != entry.dynamic || known->entry.position != entry.position;
    if (known->regrouped && keyChanged)
        return FormatMessage(m_strings, ExchangeText::Regrouped, {entry.callsign});
    return {};
}

void DirectoryImport::Store()
{
    const auto rows = dao::AddressTable::Open(m_database);
    ParkIdents(*rows);
    for (const dao::AddressRecord& entry : m_entries) {
        const auto known = m_known.constFind(dao::Fold(entry.callsign));
        if (known == m_known.constEnd()) {
            rows->AddNew();
        } else {
            rows->Seek(known->entry.id);
            rows->Edit();
        }
        dao::AddressTable::Write(*rows, entry);
        rows->Update();
    }
}

// An address that passes from one entry to another has to be free for a moment.
void DirectoryImport::ParkIdents(dao::Recordset& rows)
{
    for (const dao::AddressRecord& entry : m_entries) {
        const auto known = m_known.constFind(dao::Fold(entry.callsign));
        if (known == m_known.constEnd() || known->entry.ident == entry.ident)
            continue;
        rows.Seek(known->entry.id);
        rows.Edit();
        rows.SetField(dao::AddressTable::IdentField, QStringLiteral("import %1").arg(known->entry.id));
        rows.Update();
    }
}
