#pragma once

#include <QString>
#include <string>

namespace dao {

// A text as it is compared where case does not count: composed (NFC), each character folded by Unicode's
// simple case folding. The function kyn_fold of the schema is this one; a change of it makes the indexes that
// use it stale.
QString Fold(const QString& text);

// NUL, which no server can store, as its sign; everything else as it is.
QString WithSignsForNull(QString text);

// A search text of the lists: matches anywhere in a text, without regard to case; "*" stands for any
// characters, "?" for exactly one, everything else for itself. An empty one matches everything.
class LookFor {
public:
    explicit LookFor(const QString& pattern);
    bool Matches(const QString& text) const;
    bool MatchesEverything() const { return m_pattern == U"**"; }

private:
    std::u32string m_pattern;
};

} // namespace dao
