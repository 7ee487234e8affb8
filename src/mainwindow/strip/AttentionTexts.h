#pragma once

#include "dao/tables/AttentionTable.h"

#include <QString>
#include <vector>

struct IStringSource;

// What waits for a person, in words.
class AttentionTexts {
public:
    using Entry = dao::AttentionRecord;

    explicit AttentionTexts(const IStringSource& strings) : m_strings(strings) {}

    QString KindOf(const Entry& entry) const;
    QString Time(const QDateTime& time, const QDateTime& now) const; // with its day unless it is today's
    QString TakenBy(const Entry& entry, const QDateTime& now) const; // empty: nobody has
    QString Line(const Entry& entry, const QDateTime& now) const;
    // How many of each kind, those that nobody has taken.
    QString Counts(const std::vector<Entry>& entries) const;

private:
    const IStringSource& m_strings;
};
