#include "mainwindow/frame/NumberingTables.h"

#include "core/session/DbSession.h"
#include "dao/Database.h"

QString ReadNumberingTables(IDbSession& session)
{
    QString text;
    for (const char* table : {"fleet", "kyn_registry"}) {
        const auto rows = session.Database().OpenTable(QLatin1String(table));
        const QStringList fields = rows->FieldNames();
        for (; !rows->Eof(); rows->MoveNext())
            for (const QString& field : fields)
                text += rows->Field(field).toString() + QLatin1Char('\n');
    }
    return text;
}
