#pragma once

#include "dao/Workspace.h"
#include "support/TestServer.h"
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

// A fresh database of its own, in files or on a server, with one administrator, and a workspace of his.
class DaoTest : public ::testing::Test {
protected:
    DaoTest();
    ~DaoTest() override;

    // The tests run on a server instead of on files.
    static bool OnServer() { return TestServer::IsWanted(); }

    std::unique_ptr<dao::Workspace> Open(const QString& user = "Boss", const QString& password = "secret");
    dao::Database& Db() { return m_workspace->Database(); }
    // A second account: operator, password "pw".
    void AddOperator(const QString& name = "Olga");

    // Adds records to a table: one list of values for each, in the order of the fields.
    void Add(const QString& table, const QStringList& fields, const QList<QVariantList>& records);
    // An entry of the directory of 1 = individual or 2 = talkgroup.
    void AddAddress(const QString& callsign, const QString& ident, int type = 1, const QVariant& name = {});
    qlonglong IdOf(const QString& callsign);
    // Runs a stored query; each row becomes its fields joined by "|", booleans as 0 and 1.
    QStringList Rows(const QString& query, const QVariantMap& parameters, const QString& fields);
    QStringList Sql(const QString& sql, const QString& fields);
    int Execute(const QString& query, const QVariantMap& parameters);

    QTemporaryDir m_folder;
    dao::Location m_location;
    dao::OpenOptions m_options;
    QDateTime m_now{QDate(2024, 3, 31), QTime(12, 0, 0, 250), Qt::UTC};
    std::unique_ptr<dao::Workspace> m_workspace;
};

// The kind that an action fails with; empty when it does not.
std::optional<dao::Kind> KindOf(const std::function<void()>& action);
// The values of the Error that an action fails with.
QStringList ValuesOf(const std::function<void()>& action);

namespace dao {
void PrintTo(Kind kind, std::ostream* stream);
}
void PrintTo(const QString& text, std::ostream* stream);
