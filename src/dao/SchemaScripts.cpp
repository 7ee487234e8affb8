#include "dao/SchemaScripts.h"
#include "dao/Error.h"
#include <QFile>

static void InitialiseSchemaResources()
{
    Q_INIT_RESOURCE(veltorkyn_schema);
}

namespace dao {

QList<Migration> SchemaScripts(const QString& prefix)
{
    InitialiseSchemaResources();
    QList<Migration> migrations;
    while (true) {
        const int version = static_cast<int>(migrations.size()) + 1;
        QFile file(":/veltorkyn/schema/" + prefix + QString::number(version).rightJustified(4, '0') + ".sql");
        if (!file.open(QIODevice::ReadOnly))
            break;
        migrations.append({version, QString::fromUtf8(file.readAll())});
    }
    if (migrations.isEmpty())
        throw Error(Kind::Engine, {"schema scripts missing"}, "no schema scripts in the program");
    return migrations;
}

} // namespace dao
