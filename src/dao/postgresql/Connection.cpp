#include "dao/postgresql/Connection.h"
#include "dao/postgresql/ErrorMapping.h"
#include "dao/postgresql/ResultRecordset.h"
#include <QRegularExpression>

namespace dao::postgresql {

namespace {

constexpr auto LockChanges = "SELECT pg_advisory_xact_lock(5)"; // see the schema's kyn_share_changes
constexpr int MostAttempts = 10; // when the server unties statements that wait for each other

bool LooksLikeSelect(const QString& sql)
{
    static const QRegularExpression select(R"(^\s*(select|with|values|table)\b)",
                                           QRegularExpression::CaseInsensitiveOption);
    return select.match(sql).hasMatch();
}

// The connection was lost after a change had been sent.
Error Doubtful(const Error& away)
{
    return Error(Kind::ServerAway, {away.values.value(0), away.values.value(1), ChangeSent}, away.engineText);
}

bool LooksLikeWith(const QString& sql)
{
    return sql.trimmed().startsWith(QLatin1String("with"), Qt::CaseInsensitive);
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
    if (m_link->Wait().IsWaiting())
        throw Error(Kind::Busy);
    return *m_link;
}

StatementShape Connection::Describe(const QString& sql)
{
    const StatementPtr statement = Known(sql);
    for (int attempt = 1; !statement->columns; ++attempt) {
        try {
            Live();
            const QList<Later> later = m_later;
            Batch batch = Begun();
            batch.Describe(statement);
            Send(batch);
            if (const auto failed = batch.Failure())
                RaiseFailure(batch, *failed, later);
        } catch (const Error& error) {
            if (error.kind != Kind::ServerAway || m_inTransaction || attempt > 1)
                throw;
        }
    }
    return {LooksLikeSelect(sql) && !statement->columns->isEmpty(), *statement->columns,
            statement->text.parameters};
}

QStringList Connection::Parameters(const QString& sql)
{
    Link();
    return Known(sql)->text.parameters;
}

// What begins as one has columns, unless it is a changing statement with a query before it.
bool Connection::IsSelect(const QString& sql)
{
    Link();
    return LooksLikeSelect(sql) && (!LooksLikeWith(sql) || Describe(sql).isSelect);
}

int Connection::Change(const QString& sql, const QVariantList& values)
{
    return Ask({{sql, values}}, true).back().Changed();
}

void Connection::ChangeLater(const QString& sql, const QVariantList& values, const Explain& explain)
{
    if (!m_isTogether)
        return Engine::ChangeLater(sql, values, explain);
    Live();
    const StatementPtr statement = Known(sql);
    m_later.append({statement, Texts(statement->text, values), explain});
}

Engine::Changed Connection::ChangeAndRead(const Request& change, const Request& read)
{
    const std::vector<Result> answers = Ask({change, read}, true);
    const int records = answers.front().Changed();
    return {records,
            records > 0 && answers.back().Rows() > 0 ? std::optional(answers.back().Row(0)) : std::nullopt};
}

std::optional<QVariantList> Connection::FirstRow(const QString& sql, const QVariantList& values)
{
    const Result result = Read(sql, values);
    return result.Rows() > 0 ? std::optional(result.Row(0)) : std::nullopt;
}

std::vector<QVariantList> Connection::AllRows(const QString& sql, const QVariantList& values)
{
    const Result result = Read(sql, values);
    std::vector<QVariantList> rows;
    for (int row = 0; row < result.Rows(); ++row)
        rows.push_back(result.Row(row));
    return rows;
}

std::unique_ptr<Recordset> Connection::OpenSnapshot(const QString& sql, const QVariantList& values, bool keep)
{
    if (!IsSelect(sql))
        throw Error(Kind::WrongUse, {sql});
    return std::make_unique<ResultRecordset>(shared_from_this(), Read(sql, values, keep));
}

std::shared_ptr<const TableShape> Connection::ReadTable(const QString& name)
{
    if (m_tables.isEmpty())
        m_tables = ReadTableShapes(*this);
    const auto table = m_tables.value(name.toLower());
    if (!table)
        throw Error(Kind::NoSuchTable, {name});
    return table;
}

QVariant Connection::Value(const QString& sql, const QVariantList& values)
{
    const auto row = FirstRow(sql, values);
    return row ? row->first() : QVariant();
}

void Connection::Execute(const QString& script)
{
    Live();
    m_ahead.Drop();
    m_tables.clear();
    const Result result = SendScript(script.toUtf8());
    if (!result.IsSuccess())
        Raise(result);
}

// Within a transaction never a new connection: what follows would be stored without what went before.
PGconn* Connection::Live()
{
    ServerLink& link = Link();
    if (m_failure)
        std::rethrow_exception(m_failure);
    if (!m_inTransaction)
        return link.Handle();
    if (link.Generation() != m_transactionGeneration)
        throw Error(Kind::ServerAway, {link.Server(), "transaction lost"}, "the transaction is lost");
    return link.Present();
}

Connection::StatementPtr Connection::Known(const QString& sql)
{
    StatementPtr& statement = m_statements[sql];
    if (!statement)
        statement = std::make_shared<Statement>(
            Statement{sql, SqlText::Parse(sql), "kyn" + QByteArray::number(++m_names), 0, {}});
    return statement;
}

std::vector<QByteArray> Connection::Texts(const SqlText& text, const QVariantList& values) const
{
    std::vector<QByteArray> texts(static_cast<std::size_t>(text.count));
    for (qsizetype i = 0; i < text.numbers.size(); ++i)
        texts.at(static_cast<std::size_t>(text.numbers[i] - 1)) =
            ParameterText(values.value(i), text.parameters[i]);
    if (text.now > 0) {
        const QDateTime now = m_now ? m_now() : QDateTime::currentDateTimeUtc();
        texts.at(static_cast<std::size_t>(text.now - 1)) = QByteArray::number(now.toMSecsSinceEpoch());
    }
    return texts;
}

Result Connection::Read(const QString& sql, const QVariantList& values, bool keep)
{
    if (auto known = TakeAhead(sql, values))
        return std::move(*known);
    return std::move(Ask({{sql, values}}, false, keep).back());
}

std::vector<Result> Connection::Ask(const QList<Request>& requests, bool changes, bool keep)
{
    if (changes)
        m_ahead.DropWhatReads(requests.front().sql);
    for (int attempt = 1;; ++attempt) {
        bool sent = false;
        try {
            const ServerWait::Storing storing(Link().Wait(), changes && !m_inTransaction);
            std::vector<Result> answers = AskOnce(requests, keep, attempt == MostAttempts, sent);
            if (!answers.empty())
                return answers;
        } catch (const Error& error) {
            // Once more on a new connection, unless it may have been done on the old one.
            if (error.kind == Kind::ServerAway && changes && sent && !m_inTransaction)
                throw Doubtful(error);
            if (error.kind != Kind::ServerAway || m_inTransaction || attempt > 1)
                throw;
        }
    }
}

// An answer to each request. None when the server has untied statements that waited for each other: then it
// is to be tried again, unless this was the last time or it is a transaction's.
std::vector<Result> Connection::AskOnce(const QList<Request>& requests, bool keep, bool last, bool& sent)
{
    Live();
    std::vector<std::pair<StatementPtr, std::vector<QByteArray>>> statements;
    for (const auto& [sql, values] : requests) {
        const StatementPtr statement =
            keep ? Known(sql) : std::make_shared<Statement>(Statement{sql, SqlText::Parse(sql), {}, 0, {}});
        statements.emplace_back(statement, Texts(statement->text, values));
    }
    const QList<Later> later = m_later;
    Batch batch = Begun();
    for (const auto& [statement, texts] : statements)
        batch.Run(statement, texts);
    sent = true;
    Send(batch);
    if (const auto failed = batch.Failure()) {
        if (!m_inTransaction && !last && IsDeadlock(batch.Answers()[*failed].Handle()))
            return {};
        RaiseFailure(batch, *failed, later);
    }
    std::vector<Result> answers;
    for (std::size_t i = 0; i < batch.Steps().size(); ++i)
        if (batch.Steps()[i].kind == Batch::Kind::Run && batch.Steps()[i].owner < 0)
            answers.push_back(std::move(batch.Answers()[i]));
    Link().Collect();
    return answers;
}

// What is to go before the next statement: the server gives a whole transaction up for one that fails, unless
// there is a savepoint before it; one that is sent together begins here.
Batch Connection::Begun()
{
    Batch batch(Link().Generation());
    if (m_inTransaction && !m_isTogether) {
        if (m_hasSavepoint)
            batch.Say("RELEASE SAVEPOINT kyn");
        batch.Say("SAVEPOINT kyn");
    }
    if (m_isTogether && !std::exchange(m_isBegun, true)) {
        batch.Say("BEGIN");
        batch.Say(LockChanges);
    }
    int owner = 0;
    for (const Later& later : std::exchange(m_later, {}))
        batch.Run(later.statement, later.texts, owner++);
    return batch;
}

void Connection::Send(Batch& batch)
{
    ServerLink& link = Link();
    PGconn* connection = link.Present();
    m_hasSavepoint = false; // until it is known to be there
    if (!batch.Exchange(connection, link.Wait()))
        RaiseLost(QString::fromUtf8(PQerrorMessage(connection)).trimmed());
    m_hasSavepoint = m_inTransaction && !m_isTogether;
    for (std::size_t i = 0; i < batch.Steps().size(); ++i)
        if (batch.Steps()[i].kind == Batch::Kind::Command && !batch.Answers()[i].IsSuccess())
            m_hasSavepoint = false;
}

void Connection::RaiseFailure(Batch& batch, std::size_t failed, const QList<Later>& later)
{
    const Batch::Step& step = batch.Steps()[failed];
    const Result& answer = batch.Answers()[failed];
    try {
        // A syntax error; several statements in one are one.
        if (step.kind != Batch::Kind::Prepare || StateOf(answer.Handle()) != "42601")
            Raise(answer);
        RestoreTransaction();
        throw Error(Kind::WrongUse, {step.statement->sql},
                    QString::fromUtf8(PQresultErrorMessage(answer.Handle())));
    } catch (Error& error) {
        if (step.owner >= 0 && later[step.owner].explain)
            later[step.owner].explain(error);
        if (m_isTogether)
            m_failure = std::current_exception();
        throw;
    }
}

Result Connection::SendScript(const char* script) const
{
    PGconn* connection = Link().Present();
    return Link().Wait().AnswerTo(connection, PQsendQuery(connection, script));
}

// Raises the failure of a statement; a connection that broke is given up, a transaction is as it was before.
void Connection::Raise(const Result& result)
{
    const QString text = QString::fromUtf8(PQresultErrorMessage(result.Handle())).trimmed();
    if (PQstatus(Link().Present()) == CONNECTION_BAD || EndsConnection(result.Handle()))
        RaiseLost(text);
    RestoreTransaction();
    throw MakeError(result.Handle(), Link().Server());
}

void Connection::RaiseLost(const QString& text)
{
    Link().Lose(text);
    throw Error(Kind::ServerAway, {Link().Server(), text.section('\n', 0, 0)}, text);
}

void Connection::RestoreTransaction()
{
    if (m_inTransaction && m_hasSavepoint)
        SendScript("ROLLBACK TO SAVEPOINT kyn");
}

void Connection::ReadAhead(const QList<Request>& requests, bool listening)
{
    if (m_inTransaction)
        return;
    try {
        Live();
        ServerLink& link = Link();
        m_ahead.Follow(link);
        Batch batch(link.Generation());
        if (listening && !link.IsListening())
            batch.Say(ServerLink::AskForNotices);
        batch.Divide();
        std::vector<QByteArray> keys;
        for (const auto& [sql, values] : requests) {
            const StatementPtr statement = Known(sql);
            const std::vector<QByteArray> texts = Texts(statement->text, values);
            QByteArray key = AnswersAhead::Key(sql, texts);
            if (m_ahead.Has(key))
                continue;
            batch.Run(statement, texts, static_cast<int>(keys.size()));
            batch.Divide();
            keys.push_back(std::move(key));
        }
        if (batch.Steps().empty())
            return;
        Send(batch);
        for (std::size_t i = 0; i < batch.Steps().size(); ++i) {
            const Batch::Step& step = batch.Steps()[i];
            if (!batch.Answers()[i].IsSuccess())
                continue; // whoever asks for it finds out why
            if (step.kind == Batch::Kind::Command)
                link.SetListening();
            if (step.kind == Batch::Kind::Run)
                m_ahead.Keep(keys[static_cast<std::size_t>(step.owner)], std::move(batch.Answers()[i]));
        }
        link.Collect();
    } catch (const Error& error) {
        if (error.kind == Kind::Closed)
            throw;
    }
}

std::optional<Result> Connection::TakeAhead(const QString& sql, const QVariantList& values)
{
    if (m_ahead.IsEmpty() || m_inTransaction)
        return {};
    Live();
    m_ahead.Follow(Link());
    return m_ahead.Take(AnswersAhead::Key(sql, Texts(Known(sql)->text, values)));
}

void Connection::Begin()
{
    Live();
    if (m_inTransaction)
        throw Error(Kind::InTransaction);
    m_ahead.Drop();
    Batch batch(Link().Generation());
    batch.Say("BEGIN");
    batch.Say(LockChanges);
    Send(batch);
    if (const auto failed = batch.Failure()) {
        SendScript("ROLLBACK");
        Raise(batch.Answers()[*failed]);
    }
    m_inTransaction = true;
    m_hasSavepoint = false;
    m_transactionGeneration = Link().Generation();
}

void Connection::BeginTogether()
{
    Live();
    if (m_inTransaction)
        throw Error(Kind::InTransaction);
    m_ahead.Drop();
    m_inTransaction = true;
    m_isTogether = true;
    m_isBegun = false;
    m_transactionGeneration = Link().Generation();
}

void Connection::Commit()
{
    Link();
    if (!m_inTransaction)
        throw Error(Kind::NoTransaction);
    Live();
    const QList<Later> later = m_later;
    const bool isEmpty = m_isTogether && !m_isBegun && later.isEmpty();
    if (!isEmpty)
        SendCommit(later);
    m_inTransaction = false;
    EndTogether();
    Link().Collect();
}

void Connection::SendCommit(const QList<Later>& later)
{
    const ServerWait::Storing storing(Link().Wait(), true);
    Batch batch = m_isTogether ? Begun() : Batch(Link().Generation());
    batch.Say("COMMIT");
    try {
        Send(batch);
        if (const auto failed = batch.Failure())
            RaiseFailure(batch, *failed, later);
    } catch (const Error& error) {
        if (error.kind == Kind::ServerAway)
            throw Doubtful(error);
        throw;
    }
    if (QByteArray(PQcmdStatus(batch.Answers().back().Handle())) != "COMMIT")
        throw Error(Kind::Engine, {"transaction was rolled back"},
                    "the server has rolled the transaction back");
}

void Connection::Rollback()
{
    const bool wasOpen = std::exchange(m_inTransaction, false);
    if (!wasOpen)
        throw Error(Kind::NoTransaction);
    const bool isKnown = !m_isTogether || m_isBegun;
    EndTogether();
    if (isKnown && m_link && m_link->Generation() == m_transactionGeneration && m_link->IsConnected())
        SendScript("ROLLBACK");
}

void Connection::EndTogether()
{
    m_isTogether = false;
    m_isBegun = false;
    m_later.clear();
    m_failure = nullptr;
}

} // namespace dao::postgresql
