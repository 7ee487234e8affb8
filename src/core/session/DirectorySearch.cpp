#include "core/session/DirectorySearch.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr char End = '\n'; // of each text; nobody can type it into an address

bool IsAscii(char octet)
{
    return static_cast<unsigned char>(octet) < 0x80;
}

char Lower(char octet)
{
    return octet >= 'A' && octet <= 'Z' ? static_cast<char>(octet - 'A' + 'a') : octet;
}

} // namespace

void DirectorySearch::Reserve(std::size_t rows, std::size_t octets)
{
    m_rows.reserve(rows);
    m_texts.reserve(octets + 3 * rows);
}

void DirectorySearch::Add(std::string_view callsign, std::string_view ident, std::string_view name)
{
    Row row{};
    row.callsign = static_cast<quint32>(m_texts.size());
    Append(callsign);
    row.ident = static_cast<quint32>(m_texts.size());
    Append(ident);
    row.name = static_cast<quint32>(m_texts.size());
    Append(name);
    m_rows.push_back(row);
}

void DirectorySearch::Append(std::string_view text)
{
    if (std::all_of(text.begin(), text.end(), IsAscii))
        std::transform(text.begin(), text.end(), std::back_inserter(m_texts), Lower);
    else
        m_texts +=
            QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toLower().toStdString();
    m_texts += End;
}

std::size_t DirectorySearch::RowAt(std::size_t place) const
{
    const auto after =
        std::upper_bound(m_rows.begin(), m_rows.end(), place,
                         [](std::size_t sought, const Row& row) { return sought < row.callsign; });
    return static_cast<std::size_t>(after - m_rows.begin()) - 1;
}

std::vector<std::size_t> DirectorySearch::Find(const QString& text, std::size_t most) const
{
    const std::string wanted = text.toLower().toStdString();
    if (wanted.empty() || wanted.find(End) != std::string::npos)
        return {};
    const auto begins = [&](quint32 place) { return m_texts.compare(place, wanted.size(), wanted) == 0; };
    std::array<std::vector<std::size_t>, 3> first;
    for (std::size_t row = 0; row < m_rows.size() && first[0].size() < most; ++row) {
        const Row& places = m_rows[row];
        const std::size_t rank = begins(places.callsign) ? 0
                                 : begins(places.ident)  ? 1
                                 : begins(places.name)   ? 2
                                                         : first.size();
        if (rank < first.size() && first[rank].size() < most)
            first[rank].push_back(row);
    }
    std::vector<std::size_t> found;
    const auto take = [&](std::size_t row) {
        if (found.size() < most && std::find(found.begin(), found.end(), row) == found.end())
            found.push_back(row);
    };
    for (const auto& rows : first)
        std::for_each(rows.begin(), rows.end(), take);

    const auto next = [&](const std::string& sought, std::size_t from) {
        const void* hit = memmem(m_texts.data() + from, m_texts.size() - from, sought.data(), sought.size());
        return hit == nullptr ? std::string::npos
                              : static_cast<std::size_t>(static_cast<const char*>(hit) - m_texts.data());
    };
    const auto isFull = [&] { return found.size() >= most; };
    const std::string word = ' ' + wanted;
    for (std::size_t place = 0; !isFull() && (place = next(word, place)) != std::string::npos;) {
        const std::size_t row = RowAt(place);
        if (place >= m_rows[row].name)
            take(row);
        place = m_texts.find(End, place);
    }
    for (std::size_t place = 0; !isFull() && (place = next(wanted, place)) != std::string::npos;) {
        take(RowAt(place));
        place = m_texts.find(End, place);
    }
    return found;
}
