#include "radio/base/LastParties.h"

void LastParties::Note(const QString& party)
{
    if (party.isEmpty())
        return;
    m_parties.removeIf([&](const QString& known) { return known.compare(party, Qt::CaseInsensitive) == 0; });
    m_parties.prepend(party);
    if (m_parties.size() > Most)
        m_parties.removeLast();
}
