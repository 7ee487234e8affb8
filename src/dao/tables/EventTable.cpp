#include "dao/tables/EventTable.h"

namespace dao {

qlonglong EventTable::LastNumberOf(Database& database, const QString& console)
{
    const auto last = database.OpenSnapshot(
        QStringLiteral("select console_number from event where console = '%1' order by event_id desc limit 1")
            .arg(QString(console).replace(u'\'', QLatin1String("''"))));
    return last->Eof() ? 0 : last->NumberAt(0);
}

} // namespace dao
