#include "dao/postgresql/Connection.h"
#include "dao/postgresql/ErrorMapping.h"
#include "dao/postgresql/ResultRecordset.h"
#include "dao/postgresql/TableReader.h"
#include <QRegularExpression>

namespace dao::postgresql {

namespace {

constexpr int MostAttempts = 10; // when the server unties statements that wait for each other

bool LooksLikeSelect(const QString& sql)
{
    static const QRegularExpression select(R"(^\s*(select|with|values|table)\b)",
                                           QRegularExpression::CaseInsensitiveOption);
    return select.match(sql).hasMatch();
}

bool Succeeded(const Result& result)
{
    const ExecStatusType status = PQresultStatus(result.Handle());
    return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
}

} // namespace

std::shared_ptr<Connection> Connection::Open(const Logon& logon, Now now)
{
    std::shared_ptr<Connection> connection(new Connection(std::move(now)));
    connection->m_link = std::make_unique<ServerLink>(logon, Connect(logon));
    return connection;
}

ServerLink& Connection::Link() const
{
    if (!m_link)
        throw Error(Kind::Closed);
    return *m_link;
}

StatementShape Connection::Describe(const QString& sql)
{
    const Prepared* prepared = nullptr;
    try {
        prepared = &PreparedFor(sql);
    } catch (const Error& error) {
        if (error.kind != Kind::ServerAway || m_inTransaction)
            throw;
        prepared = &PreparedFor(sql); // on a new connection, if there is one
    }
    return {LooksLikeSelect(sql) && !prepared->columns.isEmpty(), prepared->columns,
            prepared->text.parameters};
}

int Connection::Change(const QString& sql, const QVariantList& values)
{
    return Run(sql, values, true).Changed();
}

std::optional<QVariantList> Connection::FirstRow(const QString& sql, const QVariantList& values)
{
    const Result result = Run(sql, values, false);
    return result.Rows() > 0 ? std::optional(result.Row(0)) : std::nullopt;
}

std::vector<QVariantList> Connection::AllRows(const QString& sql, const QVariantList& values)
{
    const Result result = Run(sql, values, false);
    std::vector<QVariantList> rows;
    for (int row = 0; row < result.Rows(); ++row)
        rows.push_back(result.Row(row));
    return rows;
}

std::unique_ptr<Recordset> Connection::OpenSnapshot(const QString& sql, const QVariantList& values, bool keep)
{
    if (!Describe(sql).isSelect)
        throw Error(Kind::WrongUse, {sql});
    auto recordset = std::make_unique<ResultRecordset>(shared_from_this(), Run(sql, values, false));
    if (!keep) {
        if (const auto prepared = m_prepared.take(sql))
            SendScript("DEALLOCATE " + prepared->name);
    }
    return recordset;
}

std::shared_ptr<const TableShape> Connection::ReadTable(const QString& name)
{
    return ReadTableShape(*this, name);
}

QVariant Connection::Value(const QString& sql, const QVariantList& values)
{
    const auto row = FirstRow(sql, values);
    return row ? row->first() : QVariant();
}

void Connection::Execute(const QString& script)
{
    Live();
    const Result result = SendScript(script.toUtf8());
    if (!Succeeded(result))
        Raise(result);
}

// Within a transaction never a new connection: what follows would be stored without what went before.
PGconn* Connection::Live() const
{
    ServerLink& link = Link();
    if (!m_inTransaction)
        return link.Handle();
    if (link.Generation() != m_transactionGeneration)
        throw Error(Kind::ServerAway, {link.Server(), "transaction lost"}, "the transaction is lost");
    return link.Present();
}

Connection::Prepared& Connection::PreparedFor(const QString& sql)
{
    PGconn* connection = Live();
    const auto known = m_prepared.value(sql);
    if (known && known->generation == Link().Generation())
        return *known;
    const auto prepared = std::make_shared<Prepared>();
    prepared->text = SqlText::Parse(sql);
    prepared->name = "kyn" + QByteArray::number(++m_names);
    ProtectTransaction();
    ServerWait& wait = Link().Wait();
    const Result parsed = wait.AnswerTo(
        connection, PQsendPrepare(connection, prepared->name, prepared->text.server, 0, nullptr));
    if (StateOf(parsed.Handle()) == "42601") { // a syntax error; several statements in one are one
        RestoreTransaction();
        throw Error(Kind::WrongUse, {sql}, QString::fromUtf8(PQresultErrorMessage(parsed.Handle())));
    }
    if (!Succeeded(parsed))
        Raise(parsed);
    const Result described = wait.AnswerTo(connection, PQsendDescribePrepared(connection, prepared->name));
    if (!Succeeded(described))
        Raise(described);
    for (int i = 0; i < PQnparams(described.Handle()); ++i)
        prepared->types.push_back(PQparamtype(described.Handle(), i));
    prepared->columns = described.ColumnNames();
    prepared->generation = Link().Generation();
    m_prepared.insert(sql, prepared);
    return *prepared;
}

Result Connection::Run(const QString& sql, const QVariantList& values, bool changes)
{
    for (int attempt = 1;; ++attempt) {
        bool sent = false;
        try {
            const Prepared& prepared = PreparedFor(sql);
            const std::vector<QByteArray> texts = Texts(prepared, values);
            ProtectTransaction();
            sent = true;
            Result result = Send(prepared, texts);
            if (Succeeded(result)) {
                Link().Collect();
                return result;
            }
            if (m_inTransaction || attempt == MostAttempts || !IsDeadlock(result.Handle()))
                Raise(result);
        } catch (const Error& error) {
            // Once more on a new connection, unless it may have been done on the old one.
            if (error.kind != Kind::ServerAway || m_inTransaction || attempt > 1 || (changes && sent))
                throw;
        }
    }
}

std::vector<QByteArray> Connection::Texts(const Prepared& prepared, const QVariantList& values) const
{
    const SqlText& text = prepared.text;
    std::vector<QByteArray> texts(prepared.types.size());
    for (qsizetype i = 0; i < text.numbers.size(); ++i) {
        const auto place = static_cast<std::size_t>(text.numbers[i] - 1);
        texts.at(place) = ParameterText(values.value(i), prepared.types.at(place), text.parameters[i]);
    }
    if (text.now > 0) {
        const QDateTime now = m_now ? m_now() : QDateTime::currentDateTimeUtc();
        texts.at(static_cast<std::size_t>(text.now - 1)) = QByteArray::number(now.toMSecsSinceEpoch());
    }
    return texts;
}

Result Connection::Send(const Prepared& prepared, const std::vector<QByteArray>& texts)
{
    std::vector<const char*> parameters;
    for (const QByteArray& text : texts)
        parameters.push_back(text.isNull() ? nullptr : text.constData());
    PGconn* connection = Link().Present();
    return Link().Wait().AnswerTo(connection, PQsendQueryPrepared(connection, prepared.name,
                                                                  static_cast<int>(parameters.size()),
                                                                  parameters.data(), nullptr, nullptr, 0));
}

Result Connection::SendScript(const char* script) const
{
    PGconn* connection = Link().Present();
    return Link().Wait().AnswerTo(connection, PQsendQuery(connection, script));
}

// Raises the failure of a statement; a connection that broke is given up, a transaction is as it was before.
void Connection::Raise(const Result& result)
{
    ServerLink& link = Link();
    const bool lost = PQstatus(link.Present()) == CONNECTION_BAD;
    const QString text = QString::fromUtf8(PQresultErrorMessage(result.Handle())).trimmed();
    if (lost || EndsConnection(result.Handle())) {
        link.Lose(text);
        throw Error(Kind::ServerAway, {link.Server(), text.section('\n', 0, 0)}, text);
    }
    RestoreTransaction();
    throw MakeError(result.Handle(), link.Server());
}

// The server gives a whole transaction up for one failed statement, unless there is a savepoint before it.
void Connection::ProtectTransaction()
{
    if (!m_inTransaction)
        return;
    const Result result =
        SendScript(m_hasSavepoint ? "RELEASE SAVEPOINT kyn; SAVEPOINT kyn" : "SAVEPOINT kyn");
    m_hasSavepoint = false; // until it is known to be there
    if (!Succeeded(result))
        Raise(result);
    m_hasSavepoint = true;
}

void Connection::RestoreTransaction()
{
    if (m_inTransaction && m_hasSavepoint)
        SendScript("ROLLBACK TO SAVEPOINT kyn");
}

void Connection::Begin()
{
    Live();
    if (m_inTransaction)
        throw Error(Kind::InTransaction);
    const Result result = SendScript("BEGIN; SELECT pg_advisory_xact_lock(5)");
    if (!Succeeded(result)) {
        if (PQstatus(Link().Present()) == CONNECTION_OK)
            SendScript("ROLLBACK");
        Raise(result);
    }
    m_inTransaction = true;
    m_hasSavepoint = false;
    m_transactionGeneration = Link().Generation();
}

void Connection::Commit()
{
    Link();
    if (!m_inTransaction)
        throw Error(Kind::NoTransaction);
    Live();
    const Result result = SendScript("COMMIT");
    if (!Succeeded(result))
        Raise(result);
    if (QByteArray(PQcmdStatus(result.Handle())) != "COMMIT")
        throw Error(Kind::Engine, {"transaction was rolled back"},
                    "the server has rolled the transaction back");
    m_inTransaction = false;
    Link().Collect();
}

void Connection::Rollback()
{
    const bool wasOpen = std::exchange(m_inTransaction, false);
    if (!wasOpen)
        throw Error(Kind::NoTransaction);
    if (m_link && m_link->Generation() == m_transactionGeneration && m_link->IsConnected())
        SendScript("ROLLBACK");
}

} // namespace dao::postgresql
