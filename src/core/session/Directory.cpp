#include "core/session/Directory.h"

#include "dao/base/TextMatch.h"
#include "dao/tables/AddressTable.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>

namespace {

std::string_view ViewOf(const QByteArray& text)
{
    return {text.constData(), static_cast<std::size_t>(text.size())};
}

// The one character that the engines fold differently, and what may be composed to it.
constexpr auto DottedI = "\u0130";
constexpr auto DotAbove = "\u0307";

void Put(std::vector<quint32>& table, std::string_view key, std::size_t row)
{
    std::size_t slot = std::hash<std::string_view>()(key);
    while (table[slot & (table.size() - 1)] != 0)
        ++slot;
    table[slot & (table.size() - 1)] = static_cast<quint32>(row + 1);
}

// The row whose key it is, as `matches` says of a row.
template <typename Matches>
std::optional<std::size_t> Look(const std::vector<quint32>& table, std::string_view key,
                                const Matches& matches)
{
    if (table.empty())
        return {};
    for (std::size_t slot = std::hash<std::string_view>()(key);; ++slot) {
        const quint32 found = table[slot & (table.size() - 1)];
        if (found == 0)
            return {};
        if (matches(found - 1))
            return found - 1;
    }
}

} // namespace

void Directory::Read(dao::Database& database)
{
    const auto rows = database.OpenSnapshot(dao::AddressTable::Table);
    const int id = rows->Position(dao::AddressTable::IdField);
    const int callsign = rows->Position(dao::AddressTable::CallsignField);
    const int ident = rows->Position(dao::AddressTable::IdentField);
    const int name = rows->Position(dao::AddressTable::NameField);
    const int type = rows->Position(dao::AddressTable::TypeField);
    const int dynamic = rows->Position(dao::AddressTable::DynamicField);
    const int onDuty = rows->Position(dao::AddressTable::OnDutyField);
    const int position = rows->Position(dao::AddressTable::PositionField);
    Directory read;
    bool dotted = false;
    for (; !rows->Eof(); rows->MoveNext()) {
        Row row{};
        row.texts = static_cast<quint32>(read.m_texts.size());
        row.id = static_cast<qint32>(rows->NumberAt(id));
        row.type = static_cast<Type>(rows->NumberAt(type));
        row.dynamic = rows->NumberAt(dynamic) != 0;
        row.onDuty = rows->NumberAt(onDuty) != 0;
        row.position = static_cast<quint8>(rows->NumberAt(position));
        row.callsignSize = read.Append(rows->Utf8At(callsign));
        row.identSize = read.Append(rows->Utf8At(ident));
        row.nameSize = read.Append(rows->Utf8At(name));
        read.m_rows.push_back(row);
        dotted = dotted || read.Callsign(row).find(DottedI) != std::string_view::npos ||
                 read.Callsign(row).find(DotAbove) != std::string_view::npos;
    }
    rows->Close();
    if (dotted)
        read.m_dottedI = database.Fold(QString::fromUtf8(DottedI));
    read.Index();
    *this = std::move(read);
}

// The database's limits are far below; a file that was written by hand may be beyond.
quint16 Directory::Append(std::string_view text)
{
    text = text.substr(0, std::numeric_limits<quint16>::max());
    m_texts.insert(m_texts.end(), text.begin(), text.end());
    return static_cast<quint16>(text.size());
}

void Directory::Index()
{
    m_read = true;
    std::vector<std::pair<std::string, Row>> sorted;
    sorted.reserve(m_rows.size());
    for (const Row& row : m_rows)
        sorted.emplace_back(Folded(Text(Callsign(row))).toStdString(), row);
    std::sort(sorted.begin(), sorted.end(),
              [](const auto& one, const auto& other) { return one.first < other.first; });
    m_texts.shrink_to_fit();
    m_rows.shrink_to_fit();
    const std::size_t room = std::bit_ceil(m_rows.size() * 2 + 1);
    m_byIdent.assign(room, 0);
    m_byCallsign.assign(room, 0);
    m_byId.reserve(m_rows.size());
    m_search.Reserve(m_rows.size(), m_texts.size());
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        m_rows[row] = sorted[row].second;
        Put(m_byIdent, Ident(m_rows[row]), row);
        Put(m_byCallsign, sorted[row].first, row);
        m_byId.emplace_back(m_rows[row].id, static_cast<quint32>(row));
        const Entry entry = At(row);
        m_search.Add(entry.callsign, entry.ident, entry.name);
    }
    std::sort(m_byId.begin(), m_byId.end());
}

std::optional<std::size_t> Directory::FindIdent(const QString& ident) const
{
    const QByteArray key = ident.toUtf8();
    return Look(m_byIdent, ViewOf(key), [&](quint32 index) { return Ident(m_rows[index]) == ViewOf(key); });
}

std::optional<QString> Directory::CallsignOf(const QString& ident) const
{
    const auto row = FindIdent(ident);
    return row ? std::optional(Text(Callsign(m_rows[*row]))) : std::nullopt;
}

std::optional<Directory::Type> Directory::TypeOf(const QString& ident) const
{
    const auto row = FindIdent(ident);
    return row ? std::optional(m_rows[*row].type) : std::nullopt;
}

std::optional<QString> Directory::IdentOf(const QString& callsign) const
{
    const auto row = FindCallsign(callsign);
    return row ? std::optional(Text(Ident(m_rows[*row]))) : std::nullopt;
}

// As the database folds it.
QByteArray Directory::Folded(const QString& callsign) const
{
    QString folded = dao::Fold(callsign);
    if (!m_dottedI.isEmpty())
        folded.replace(QString::fromUtf8(DottedI), m_dottedI);
    return folded.toUtf8();
}

bool Directory::IsFoldedTo(std::string_view callsign, std::string_view folded) const
{
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    if (!std::all_of(callsign.begin(), callsign.end(), isAscii))
        return ViewOf(Folded(Text(callsign))) == folded;
    return std::equal(callsign.begin(), callsign.end(), folded.begin(), folded.end(),
                      [&](char one, char other) { return lower(one) == other; });
}

std::optional<std::size_t> Directory::FindCallsign(const QString& callsign) const
{
    const QByteArray key = Folded(callsign);
    return Look(m_byCallsign, ViewOf(key),
                [&](quint32 index) { return IsFoldedTo(Callsign(m_rows[index]), ViewOf(key)); });
}

Directory::Entry Directory::At(std::size_t index) const
{
    const Row& row = m_rows[index];
    const std::string_view name(m_texts.data() + row.texts + row.callsignSize + row.identSize, row.nameSize);
    return {row.id, row.type, row.dynamic, row.onDuty, row.position, Callsign(row), Ident(row), name};
}

std::optional<Directory::Entry> Directory::Find(qint32 id) const
{
    const auto found = std::lower_bound(m_byId.begin(), m_byId.end(), std::pair(id, quint32{0}));
    return found != m_byId.end() && found->first == id ? std::optional(At(found->second)) : std::nullopt;
}

bool Directory::SetOnDuty(const QString& callsign, bool onDuty)
{
    const auto row = FindCallsign(callsign);
    if (!row || m_rows[*row].type != Type::Individual)
        return false;
    m_rows[*row].onDuty = onDuty;
    return true;
}
