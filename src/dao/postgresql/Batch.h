#pragma once

#include "dao/postgresql/Result.h"
#include "dao/postgresql/ServerWait.h"
#include "dao/postgresql/SqlText.h"
#include <QString>
#include <memory>
#include <optional>
#include <vector>

namespace dao::postgresql {

// A statement of the session.
struct Statement {
    QString sql;
    SqlText text;
    QByteArray name;                    // under which the server keeps it prepared; empty: for once
    int generation = 0;                 // of the connection that it is prepared on
    std::optional<QStringList> columns; // once it was described
};

// Statements that are sent to the server together and waited for once. Those between two divisions are one
// transaction, unless one is open; after a failure the rest of them is not done.
class Batch {
public:
    enum class Kind { Command, Prepare, Describe, Run };
    struct Step {
        Kind kind;
        std::shared_ptr<Statement> statement; // null of a command
        std::vector<QByteArray> texts;        // the parameters' values; the command
        int owner = -1;                       // as its adder numbered it
    };

    // `generation`: of the connection.
    explicit Batch(int generation) : m_generation(generation) {}

    // A command without parameters.
    void Say(const char* command) { Add({Kind::Command, nullptr, {command}}); }
    // Both prepare it first where it is not yet.
    void Run(const std::shared_ptr<Statement>& statement, const std::vector<QByteArray>& texts,
             int owner = -1);
    void Describe(const std::shared_ptr<Statement>& statement);
    void Divide();

    // Sends all of it. False when the connection cannot be used any more; then nobody knows what was done.
    bool Exchange(PGconn* connection, ServerWait& wait);

    const std::vector<Step>& Steps() const { return m_steps; }
    // To the steps, in their order. What was not done after a failure is no success either.
    std::vector<Result>& Answers() { return m_answers; }
    // The first step that failed; empty when none did.
    std::optional<std::size_t> Failure() const;

private:
    void Add(Step step);
    void Prepare(const std::shared_ptr<Statement>& statement, int owner);
    bool Send(PGconn* connection) const;
    static int Send(PGconn* connection, const Step& step);
    void NoteOutcome();

    int m_generation;
    std::vector<Step> m_steps;
    std::vector<int> m_parts{0}; // how many steps each has
    std::vector<Result> m_answers;
};

} // namespace dao::postgresql
