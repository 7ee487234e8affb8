#include "ctl/commands/DirectoryImport.h"

#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/texts/Validation.h"
#include "dao/base/TextMatch.h"
#include "dao/tables/RegroupTable.h"
#include "radio/base/AddressingText.h"

namespace {

enum Field { Type, Callsign, Ident, Name, Note, Dynamic, Position };

const QString Individual = QStringLiteral("individual");
const QString Talkgroup = QStringLiteral("talkgroup");
const QString Yes = QStringLiteral("yes");
const QString No = QStringLiteral("no");

QString TooLong(dao::Database& database, const QString& field, const QString& text)
{
    const int longest = database.FieldSize(dao::AddressTable::Table, field);
    return text.toUcs4().size() <= longest
               ? QString()
               : QStringLiteral("%1 has more than %2 characters").arg(field).arg(longest);
}

} // namespace

QStringList DirectoryImport::Columns()
{
    return {"type", "callsign", "ident", "name", "note", "dynamic", "position"};
}

QStringList DirectoryImport::FieldsOf(const dao::AddressRecord& entry)
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

DirectoryImport::DirectoryImport(dao::Database& database, std::unique_ptr<MptAddressing> addressing,
                                 const IStringSource& strings)
    : m_database(database),
      m_addressing(std::move(addressing)),
      m_strings(strings)
{
    ReadDirectory();
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

QString DirectoryImport::Check(const QStringList& fields)
{
    dao::AddressRecord entry;
    QString problem = Prepare(fields, entry);
    if (problem.isEmpty())
        problem = CheckBesideDirectory(entry);
    if (!problem.isEmpty())
        return problem;
    const QString key = dao::Fold(entry.callsign);
    m_identOwner.insert(entry.ident, key);
    m_seen.insert(key, true);
    m_entries.push_back(entry);
    return {};
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
        return QStringLiteral("type is \"%1\", not individual or talkgroup").arg(fields[Type]);
    const QString dynamic = fields[Dynamic].trimmed().toLower();
    if (dynamic != Yes && dynamic != No)
        return QStringLiteral("dynamic is \"%1\", not yes or no").arg(fields[Dynamic]);
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
        return QStringLiteral("position is \"%1\", not a number from 1 to 16").arg(fields[Position]);
    return {};
}

QString DirectoryImport::CheckFields(const dao::AddressRecord& entry) const
{
    for (const int rule : {ProblemOfCallsign(entry), ProblemOfName(entry)})
        if (rule != 0)
            return m_strings.LoadString(rule);
    for (const auto& [field, text] : {std::pair(dao::AddressTable::NameField, entry.name),
                                      std::pair(dao::AddressTable::NoteField, entry.note),
                                      std::pair(dao::AddressTable::IdentField, entry.ident)}) {
        const QString problem = TooLong(m_database, field, text);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString DirectoryImport::CompleteIdent(QString& ident) const
{
    if (ident.isEmpty())
        return QStringLiteral("ident is empty");
    if (!m_addressing)
        return {};
    try {
        ident = QString::fromStdString(
            m_addressing->AddressToDial(m_addressing->DialToAddress(ident.toStdString())));
        return {};
    } catch (const AddressingError& failure) {
        return QStringLiteral("ident \"%1\": %2")
            .arg(ident, AddressingFailure(failure, m_strings).Description());
    }
}

QString DirectoryImport::CheckBesideDirectory(const dao::AddressRecord& entry) const
{
    const QString key = dao::Fold(entry.callsign);
    if (m_seen.contains(key))
        return QStringLiteral("the callsign \"%1\" comes twice").arg(entry.callsign);
    const QString owner = m_identOwner.value(entry.ident);
    if (!owner.isEmpty() && owner != key)
        return QStringLiteral("the ident \"%1\" belongs to another entry").arg(entry.ident);
    const auto known = m_known.constFind(key);
    if (known == m_known.constEnd())
        return {};
    if (known->entry.kind != entry.kind)
        return QStringLiteral("\"%1\" is in the directory as the other type").arg(entry.callsign);
    const bool keyChanged = known->entry.callsign != entry.callsign || known->entry.ident != entry.ident ||
                            known->entry.dynamic != entry.dynamic || known->entry.position != entry.position;
    if (known->regrouped && keyChanged)
        return QStringLiteral("\"%1\" takes part in dynamic regrouping: only its name and note can change")
            .arg(entry.callsign);
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
