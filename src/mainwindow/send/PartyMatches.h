#pragma once

#include <QString>
#include <vector>

class Directory;

// A party that what is typed may mean.
struct Party {
    QString callsign;
    QString number;
    QString name;
};

// At most so many parties of the directory that match: those whose callsign begins so come first, then those
// whose number does, then those with a word of the name that does, then those that hold it anywhere. Upper
// and lower case are the same. Nothing for a blank text, and nothing when it already is the only match.
std::vector<Party> FindParties(const Directory& directory, const QString& typed, std::size_t most);
