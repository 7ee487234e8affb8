#include "mainwindow/send/PartyMatches.h"

#include "core/session/Directory.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::size_t Ranks = 4;

char Folded(char octet)
{
    return octet >= 'A' && octet <= 'Z' ? static_cast<char>(octet - 'A' + 'a') : octet;
}

bool Equal(char text, char folded)
{
    return Folded(text) == folded;
}

// What is typed, as it is looked for. Letters beyond ASCII need their rules for case, which octets do not
// have; a directory has a hundred thousand entries and a key is answered at once, so those alone pay for it.
class Wanted {
public:
    explicit Wanted(const QString& typed) : m_text(typed), m_octets(typed.toLower().toStdString())
    {
        m_plain = std::all_of(
            m_octets.begin(), m_octets.end(),
            [](char octet) { return static_cast<unsigned char>(octet) < 0x80; });
    }

    // Where it is in the text, with 0 for its beginning; npos when it is not there.
    std::size_t Place(std::string_view text) const
    {
        if (!m_plain) {
            const auto place = Directory::Text(text).indexOf(m_text, 0, Qt::CaseInsensitive);
            return place < 0 ? std::string_view::npos : static_cast<std::size_t>(place);
        }
        const auto found = std::search(text.begin(), text.end(), m_octets.begin(), m_octets.end(), Equal);
        return found == text.end() ? std::string_view::npos : static_cast<std::size_t>(found - text.begin());
    }
    bool BeginsWord(std::string_view text) const
    {
        const std::size_t place = Place(text);
        return place == 0 || (place != std::string_view::npos && m_plain && text[place - 1] == ' ');
    }

private:
    QString m_text;
    std::string m_octets;
    bool m_plain;
};

// The lower the better; Ranks: no match.
std::size_t RankOf(const Wanted& wanted, const Directory::Entry& entry)
{
    const std::size_t inCallsign = wanted.Place(entry.callsign);
    if (inCallsign == 0)
        return 0;
    const std::size_t inNumber = wanted.Place(entry.ident);
    if (inNumber == 0)
        return 1;
    if (wanted.BeginsWord(entry.name))
        return 2;
    constexpr std::size_t Nowhere = std::string_view::npos;
    return inCallsign != Nowhere || inNumber != Nowhere || wanted.Place(entry.name) != Nowhere ? 3 : Ranks;
}

} // namespace

std::vector<Party> FindParties(const Directory& directory, const QString& typed, std::size_t most)
{
    const QString text = typed.trimmed();
    if (text.isEmpty())
        return {};
    const Wanted wanted(text);
    std::array<std::vector<std::size_t>, Ranks> found;
    for (std::size_t index = 0; index < directory.Size() && found[0].size() < most; ++index) {
        const std::size_t rank = RankOf(wanted, directory.At(index));
        if (rank < Ranks && found[rank].size() < most)
            found[rank].push_back(index);
    }
    std::vector<Party> parties;
    for (const auto& indices : found)
        for (const std::size_t index : indices)
            if (parties.size() < most) {
                const Directory::Entry entry = directory.At(index);
                parties.push_back({Directory::Text(entry.callsign), Directory::Text(entry.ident),
                                   Directory::Text(entry.name)});
            }
    const bool typedOut =
        parties.size() == 1 &&
        (parties[0].callsign.compare(text, Qt::CaseInsensitive) == 0 || parties[0].number == text);
    return typedOut ? std::vector<Party>() : parties;
}
