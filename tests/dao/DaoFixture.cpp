#include "DaoFixture.h"
#include "dao/base/Error.h"
#include "dao/postgresql/ServerSetup.h"

using namespace dao;

DaoTest::DaoTest()
    : m_location(LocationOf(OnServer() ? TestServer::Get().Target(TestServer::Get().NewName())
                                       : m_folder.filePath("fleet.kyndb")))
{
    m_options.busyTimeout = std::chrono::milliseconds(20);
    m_options.passwordCost = PasswordCost::Lowest();
    m_options.now = [this] { return m_now; };
    CreateDatabase(m_location, "Boss", "secret", PasswordCost::Lowest());
    m_workspace = Open();
}

DaoTest::~DaoTest()
{
    m_workspace.reset();
    if (OnServer())
        postgresql::DropServerDatabase(postgresql::ServerAddress::Parse(m_location.database));
}

std::unique_ptr<Workspace> DaoTest::Open(const QString& user, const QString& password)
{
    return OpenWorkspace(m_location, user, password, m_options);
}

void DaoTest::AddOperator(const QString& name)
{
    const auto user = m_workspace->CreateUser(name, "PID", "pw");
    m_workspace->Users().Append(*user);
    user->Groups().Append(UsersGroupName);
    Add("user_profile", {"UserName"}, {{name}});
}

void DaoTest::Add(const QString& table, const QStringList& fields, const QList<QVariantList>& records)
{
    const auto recordset = Db().OpenTable(table);
    for (const QVariantList& record : records) {
        recordset->AddNew();
        for (qsizetype i = 0; i < fields.size(); ++i)
            recordset->SetField(fields[i], record[i]);
        recordset->Update();
    }
}

void DaoTest::AddAddress(const QString& callsign, const QString& ident, int type, const QVariant& name)
{
    Add("address", {"callsign", "IDENT", "Type", "Name"}, {{callsign, ident, type, name}});
}

qlonglong DaoTest::IdOf(const QString& callsign)
{
    const auto table = Db().OpenTable("address");
    table->SetIndex("i_callsign");
    table->Seek(callsign);
    return table->Field("address_id").toLongLong();
}

static QStringList RowsOf(Recordset& recordset, const QString& fields)
{
    QStringList rows;
    for (; !recordset.Eof(); recordset.MoveNext()) {
        QStringList row;
        for (const QString& field : fields.split(' ')) {
            const QVariant value = recordset.Field(field);
            row.append(value.typeId() == QMetaType::Bool ? QString::number(value.toInt()) : value.toString());
        }
        rows.append(row.join('|'));
    }
    return rows;
}

QStringList DaoTest::Rows(const QString& query, const QVariantMap& parameters, const QString& fields)
{
    const auto definition = Db().QueryDef(query);
    for (auto parameter = parameters.begin(); parameter != parameters.end(); ++parameter)
        definition->SetParameter(parameter.key(), parameter.value());
    return RowsOf(*definition->OpenSnapshot(), fields);
}

QStringList DaoTest::Sql(const QString& sql, const QString& fields)
{
    return RowsOf(*Db().OpenSnapshot(sql), fields);
}

int DaoTest::Execute(const QString& query, const QVariantMap& parameters)
{
    const auto definition = Db().QueryDef(query);
    for (auto parameter = parameters.begin(); parameter != parameters.end(); ++parameter)
        definition->SetParameter(parameter.key(), parameter.value());
    return definition->Execute();
}

std::optional<Kind> KindOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.kind;
    }
    return {};
}

QStringList ValuesOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.values;
    }
    return {};
}

void dao::PrintTo(Kind kind, std::ostream* stream)
{
    *stream << Error(kind).what();
}

void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}
