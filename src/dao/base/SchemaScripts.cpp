#include "dao/base/SchemaScripts.h"
#include "dao/base/Error.h"
#include <QFile>
#include <QRegularExpression>

static void InitialiseSchemaResources()
{
    Q_INIT_RESOURCE(veltorkyn_schema);
}

namespace dao {

namespace {

const QString Folder = QStringLiteral(":/veltorkyn/schema/");

QString Read(QFile& file)
{
    if (!file.open(QIODevice::ReadOnly))
        throw Error(Kind::Engine, {"schema scripts missing"}, "no " + file.fileName() + " in the program");
    return QString::fromUtf8(file.readAll());
}

QString WithIncludes(QString script)
{
    static const QRegularExpression include(R"(^\{include (\S+)\}$)", QRegularExpression::MultilineOption);
    for (auto match = include.match(script); match.hasMatch(); match = include.match(script)) {
        QFile file(Folder + match.captured(1));
        script.replace(match.capturedStart(), match.capturedLength(), Read(file));
    }
    return script;
}

} // namespace

QList<Migration> SchemaScripts(const QString& prefix)
{
    InitialiseSchemaResources();
    QList<Migration> migrations;
    while (true) {
        const int version = static_cast<int>(migrations.size()) + 1;
        QFile file(Folder + prefix + QString::number(version).rightJustified(4, '0') + ".sql");
        if (!file.exists())
            break;
        migrations.append({version, WithIncludes(Read(file))});
    }
    if (migrations.isEmpty())
        throw Error(Kind::Engine, {"schema scripts missing"}, "no schema scripts in the program");
    return migrations;
}

} // namespace dao
