#pragma once

#include "dao/postgresql/Result.h"
#include <map>
#include <optional>
#include <vector>

namespace dao::postgresql {

class ServerLink;

// Answers that were read before anybody asked, by statement and values. Each is given once, and only as long
// as nobody has changed anything: neither this session nor, as far as the server has told, another one.
class AnswersAhead {
public:
    static QByteArray Key(const QString& sql, const std::vector<QByteArray>& texts);

    bool IsEmpty() const { return m_answers.empty(); }
    bool Has(const QByteArray& key) const { return m_answers.contains(key); }
    void Keep(const QByteArray& key, Result answer);
    std::optional<Result> Take(const QByteArray& key);

    // Drops what is out of date.
    void Follow(const ServerLink& link);
    void DropWhatReads(const QString& change);
    void Drop() { m_answers.clear(); }

private:
    std::map<QByteArray, Result> m_answers;
    int m_generation = 0; // of the connection
    int m_notices = 0;    // of other sessions' changes
};

} // namespace dao::postgresql
