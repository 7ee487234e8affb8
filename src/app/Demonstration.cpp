#include "app/Demonstration.h"

#include "app/TextIds.h"
#include "core/base/AppPaths.h"
#include "core/base/ProgramLog.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "dao/Workspace.h"
#include "dao/base/FileAccess.h"
#include "dao/base/Location.h"
#include "dao/tables/AddressTable.h"
#include "dao/tables/RegistryTable.h"
#include "dao/tables/StatusTable.h"
#include "dao/tables/UserProfileTable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int AnswerTimeout = 2000; // ms
constexpr int StartTimeout = 10000; // ms

using Field = std::pair<QString, QVariant>;

void AddRecord(dao::Recordset& records, std::initializer_list<Field> fields)
{
    records.AddNew();
    for (const auto& [name, value] : fields)
        records.SetField(name, value);
    records.Update();
}

QString Text(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toString();
}

int Number(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toInt();
}

void FillFleets(dao::Database& database, const QJsonArray& fleets)
{
    const auto records = database.OpenTable(QStringLiteral("fleet"));
    for (const QJsonValue& value : fleets) {
        const QJsonObject fleet = value.toObject();
        AddRecord(*records,
                  {{QStringLiteral("fleet_name"), Text(fleet, "name")},
                   {QStringLiteral("fleet_type"), Text(fleet, "type") == QLatin1String("units") ? 1 : 2},
                   {QStringLiteral("digits"), Number(fleet, "digits")},
                   {QStringLiteral("prefix"), Number(fleet, "prefix")},
                   {QStringLiteral("base_ident"), Number(fleet, "base")},
                   {QStringLiteral("max_ident"), Number(fleet, "max")}});
    }
}

void AddEntry(dao::Recordset& records, dao::EntryKind kind, const QJsonObject& entry)
{
    records.AddNew();
    dao::AddressTable::Write(records, {.kind = kind,
                                       .callsign = Text(entry, "callsign"),
                                       .ident = Text(entry, "ident"),
                                       .name = Text(entry, "name"),
                                       .note = Text(entry, "note"),
                                       .dynamic = entry.value(QLatin1String("dynamic")).toBool(),
                                       .position = Number(entry, "position")});
    records.Update();
}

void FillDirectory(dao::Database& database, const QJsonArray& individuals, const QJsonArray& talkgroups)
{
    const auto records = dao::AddressTable::Open(database);
    for (const QJsonValue& radio : individuals)
        AddEntry(*records, dao::EntryKind::Individual, radio.toObject());
    for (const QJsonValue& group : talkgroups)
        AddEntry(*records, dao::EntryKind::Talkgroup, group.toObject());
}

void FillStatuses(dao::Database& database, const QJsonArray& statuses)
{
    const auto records = dao::StatusTable::Open(database);
    for (const QJsonValue& value : statuses) {
        const QJsonObject status = value.toObject();
        const int code = Number(status, "code");
        records->Seek(code);
        dao::StatusTable::Store(*records, {code, Text(status, "in"), Text(status, "out")});
    }
}

void FillRegistry(dao::Database& database, const QJsonObject& settings)
{
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        dao::RegistryTable::Store(database, setting.key(), setting.value().toString());
}

void AddOperator(dao::Workspace& workspace, const Demonstration::Account& account)
{
    auto user = workspace.CreateUser(account.user, QStringLiteral("demonstration"), account.password);
    workspace.Users().Append(*user);
    workspace.Users().Item(account.user)->Groups().Append(QLatin1String(dao::UsersGroupName));
    dao::UserProfileTable::Add(workspace.Database(),
                               {.userName = account.user, .callsign = account.user, .allowRegrouping = true});
}

} // namespace

const Demonstration::Account Demonstration::Administrator{QStringLiteral("Anna"), QStringLiteral("anna-demo"),
                                                          true};
const Demonstration::Account Demonstration::Operator{QStringLiteral("Oliver"), QStringLiteral("oliver-demo"),
                                                     false};

Demonstration::Demonstration(const QString& folder, const IStringSource& strings)
    : m_strings(strings),
      m_folder(QDir(folder).absolutePath())
{
    if (!dao::MakePrivateFolder(m_folder))
        throw Error(ErrorCode::General, FormatMessage(strings, CoreText::FolderNotCreated, {m_folder}));
}

Demonstration::~Demonstration()
{
    if (m_radio.state() == QProcess::NotRunning)
        return;
    m_radio.terminate();
    if (!m_radio.waitForFinished(AnswerTimeout))
        m_radio.kill();
    m_radio.waitForFinished(AnswerTimeout);
}

QString Demonstration::StartBeside(const IStringSource& strings)
{
    const QString radio = QCoreApplication::applicationDirPath() + QStringLiteral("/veltorkyn-radio");
    if (!QFileInfo(radio).isExecutable())
        return FormatMessage(strings, AppText::DemonstrationRadioMissing, {radio});
    const QString folder = AppPaths::DataFolder() + QStringLiteral("/demonstration");
    if (!QProcess::startDetached(QCoreApplication::applicationFilePath(),
                                 {QStringLiteral("--demonstration"), folder}))
        return strings.LoadString(AppText::DemonstrationNotStarted);
    return {};
}

QString Demonstration::SettingsFile() const
{
    return m_folder + QStringLiteral("/VeltorKyn.ini");
}

QString Demonstration::DatabaseFile() const
{
    return m_folder + QStringLiteral("/VeltorKyn.kyndb");
}

QString Demonstration::WorkgroupFile() const
{
    return dao::WorkgroupFileFor(DatabaseFile());
}

QString Demonstration::PortLink() const
{
    return m_folder + QStringLiteral("/radio");
}

QString Demonstration::TraceFile() const
{
    return m_folder + QStringLiteral("/wire.jsonl");
}

void Demonstration::Clean()
{
    for (const QString& file : {SettingsFile(), DatabaseFile(), WorkgroupFile()})
        QFile::remove(file);
    // There is one for each start of the radio, which appends to what it finds.
    const QString trace = QFileInfo(TraceFile()).completeBaseName();
    const QStringList traces = QDir(m_folder).entryList({trace + QStringLiteral("*.jsonl")});
    for (const QString& file : traces)
        QFile::remove(m_folder + QLatin1Char('/') + file);
}

void Demonstration::CreateDatabase()
{
    if (QFileInfo::exists(DatabaseFile()))
        return;
    const dao::Location location{DatabaseFile(), WorkgroupFile()};
    dao::CreateDatabase(location, Administrator.user, Administrator.password);
    Fill(location, Administrator);
}

void Demonstration::WriteSettings() const
{
    Settings settings(SettingsFile(), m_strings);
    settings.SetSerialPort(PortLink());
    settings.Write(QStringLiteral("DB"), QStringLiteral("databasefile"), DatabaseFile());
    settings.Write(QStringLiteral("DB"), QStringLiteral("workgroupfile"), WorkgroupFile());
    settings.Write(
        QStringLiteral("DB"), QStringLiteral("logonnote"),
        FormatMessage(m_strings, AppText::DemonstrationAccounts,
                      {Operator.user, Operator.password, Administrator.user, Administrator.password}));
    if (settings.GetLogonCount() == 0) {
        settings.SetLogWidth(460);
        settings.SetWindowPlacement({.x = 60, .y = 60, .width = 1040, .height = 680});
    }
}

void Demonstration::Fill(const dao::Location& location, const Account& administrator)
{
    QFile file(QStringLiteral(":/veltorkyn/demonstration/directory.json"));
    if (!file.open(QIODevice::ReadOnly))
        throw Error(ErrorCode::General, file.fileName());
    const QJsonObject content = QJsonDocument::fromJson(file.readAll()).object();

    const auto workspace = dao::OpenWorkspace(location, administrator.user, administrator.password);
    workspace->BeginTrans();
    dao::Database& database = workspace->Database();
    FillFleets(database, content.value(QLatin1String("fleets")).toArray());
    FillDirectory(database, content.value(QLatin1String("individuals")).toArray(),
                  content.value(QLatin1String("talkgroups")).toArray());
    FillStatuses(database, content.value(QLatin1String("statuses")).toArray());
    FillRegistry(database, content.value(QLatin1String("registry")).toObject());
    AddOperator(*workspace, Operator);
    workspace->CommitTrans();
}

void Demonstration::StartRadio(const QString& scenario, const QString& traceFile)
{
    m_scenario = scenario;
    m_traceFile = traceFile;
    RunRadio();
    // Only now: until it is ready, what it prints explains why it failed.
    QObject::connect(&m_radio, &QProcess::readyReadStandardError, &m_radio, [this] {
        ProgramLog::Write(QString::fromLocal8Bit(m_radio.readAllStandardError()).trimmed());
    });
}

void Demonstration::KillRadio()
{
    m_radio.kill();
    m_radio.waitForFinished(AnswerTimeout);
}

void Demonstration::RestartRadio()
{
    RunRadio();
}

void Demonstration::RunRadio()
{
    const QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/veltorkyn-radio");
    m_radio.setProcessChannelMode(QProcess::SeparateChannels);
    QStringList arguments{QStringLiteral("--pty"), PortLink(), QStringLiteral("--scenario"), m_scenario};
    ++m_starts;
    if (!m_traceFile.isEmpty()) {
        QString file = m_traceFile;
        if (m_starts > 1)
            file.insert(file.lastIndexOf(QLatin1Char('.')), QStringLiteral("-%1").arg(m_starts));
        arguments.append({QStringLiteral("--trace"), file});
    }
    // Nobody else would ever end it once its console is gone.
    m_radio.setChildProcessModifier([console = ::getpid()] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() != console)
            ::_exit(EXIT_FAILURE);
    });
    m_radio.start(program, arguments);
    QString answer;
    while (!answer.contains(QLatin1String("ready"))) {
        if (!m_radio.waitForReadyRead(StartTimeout)) {
            const QString problem = QString::fromLocal8Bit(m_radio.readAllStandardError()).trimmed();
            throw Error(ErrorCode::General, problem.isEmpty()
                                                ? QStringLiteral("%1: %2").arg(program, m_radio.errorString())
                                                : problem);
        }
        answer += QString::fromLocal8Bit(m_radio.readAllStandardOutput());
    }
}

QString Demonstration::TellRadio(const QString& command)
{
    m_radio.readAllStandardOutput();
    m_radio.write(command.toUtf8() + '\n');
    QString answer;
    while (!answer.contains(QLatin1Char('\n')) && m_radio.waitForReadyRead(AnswerTimeout))
        answer += QString::fromUtf8(m_radio.readAllStandardOutput());
    return answer.trimmed();
}
