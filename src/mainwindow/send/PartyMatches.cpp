#include "mainwindow/send/PartyMatches.h"

#include "core/session/Directory.h"

std::vector<Party> FindParties(const Directory& directory, const QString& typed, std::size_t most)
{
    const QString text = typed.trimmed();
    std::vector<Party> parties;
    for (const std::size_t index : directory.Search(text, most)) {
        const Directory::Entry entry = directory.At(index);
        parties.push_back(
            {Directory::Text(entry.callsign), Directory::Text(entry.ident), Directory::Text(entry.name)});
    }
    const bool typedOut =
        parties.size() == 1 &&
        (parties[0].callsign.compare(text, Qt::CaseInsensitive) == 0 || parties[0].number == text);
    return typedOut ? std::vector<Party>() : parties;
}
