#include "dao/records/Engine.h"

namespace dao {

void Engine::ChangeLater(const QString& sql, const QVariantList& values, const Explain& explain)
{
    try {
        Change(sql, values);
    } catch (Error& error) {
        explain(error);
        throw;
    }
}

Engine::Changed Engine::ChangeAndRead(const Request& change, const Request& read)
{
    const int records = Change(change.sql, change.values);
    return {records, records > 0 ? FirstRow(read.sql, read.values) : std::nullopt};
}

} // namespace dao
