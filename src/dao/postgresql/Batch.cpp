#include "dao/postgresql/Batch.h"
#include <algorithm>

namespace dao::postgresql {

void Batch::Add(Step step)
{
    m_steps.push_back(std::move(step));
    ++m_parts.back();
}

// Taken for prepared at once, so that it is not prepared twice in one batch.
void Batch::Prepare(const std::shared_ptr<Statement>& statement, int owner)
{
    if (!statement->name.isEmpty() && statement->generation == m_generation)
        return;
    statement->generation = m_generation;
    Add({Kind::Prepare, statement, {}, owner});
}

void Batch::Run(const std::shared_ptr<Statement>& statement, const std::vector<QByteArray>& texts, int owner)
{
    Prepare(statement, owner);
    Add({Kind::Run, statement, texts, owner});
}

void Batch::Describe(const std::shared_ptr<Statement>& statement)
{
    Prepare(statement, -1);
    Add({Kind::Describe, statement, {}});
}

void Batch::Divide()
{
    if (m_parts.back() > 0)
        m_parts.push_back(0);
}

bool Batch::Exchange(PGconn* connection, ServerWait& wait)
{
    if (m_parts.back() == 0)
        m_parts.pop_back();
    const bool whole = PQenterPipelineMode(connection) == 1 && Send(connection) &&
                       wait.AnswersTo(connection, m_parts, m_answers) &&
                       PQexitPipelineMode(connection) == 1 && PQstatus(connection) == CONNECTION_OK;
    NoteOutcome();
    return whole;
}

bool Batch::Send(PGconn* connection) const
{
    auto step = m_steps.begin();
    for (const int steps : m_parts) {
        for (const auto end = step + steps; step != end; ++step)
            if (Send(connection, *step) != 1)
                return false;
        if (PQpipelineSync(connection) != 1)
            return false;
    }
    return true;
}

int Batch::Send(PGconn* connection, const Step& step)
{
    const char* text = step.texts.empty() ? nullptr : step.texts.front().constData();
    switch (step.kind) {
    case Kind::Command:
        return PQsendQueryParams(connection, text, 0, nullptr, nullptr, nullptr, nullptr, 0);
    case Kind::Prepare:
        return PQsendPrepare(connection, step.statement->name, step.statement->text.server, 0, nullptr);
    case Kind::Describe:
        return PQsendDescribePrepared(connection, step.statement->name);
    case Kind::Run:
        break;
    }
    std::vector<const char*> values;
    for (const QByteArray& value : step.texts)
        values.push_back(value.isNull() ? nullptr : value.constData());
    return PQsendQueryPrepared(connection, step.statement->name, static_cast<int>(values.size()),
                               values.data(), nullptr, nullptr, 0);
}

void Batch::NoteOutcome()
{
    for (std::size_t i = 0; i < m_steps.size(); ++i) {
        const Step& step = m_steps[i];
        const bool done = i < m_answers.size() && m_answers[i].IsSuccess();
        if (step.kind == Kind::Prepare && !done)
            step.statement->generation = 0;
        if (step.kind == Kind::Describe && done)
            step.statement->columns = m_answers[i].ColumnNames();
    }
}

std::optional<std::size_t> Batch::Failure() const
{
    const auto failed = std::find_if(m_answers.begin(), m_answers.end(),
                                     [](const Result& answer) { return !answer.IsSuccess(); });
    return failed == m_answers.end() ? std::nullopt
                                     : std::optional(static_cast<std::size_t>(failed - m_answers.begin()));
}

} // namespace dao::postgresql
