#pragma once

#include "dao/sqlite/Handle.h"
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3_stmt;

namespace dao::sqlite {

// One prepared statement of a Handle, which outlives it. Parameters and columns count from 0. Once the
// connection is closed every use raises Kind::Closed.
class Statement {
public:
    Statement(const Handle& file, const QString& sql, bool kept);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    const QStringList& ParameterNames() const { return m_parameterNames; } // without their prefix
    const QStringList& ColumnNames() const { return m_columnNames; }
    void CheckOpen() const { Prepared(); }
    // A statement that returns rows and changes nothing.
    bool IsSelect() const;

    void Bind(int parameter, const QVariant& value);
    void Bind(const QVariantList& values);
    // True when there is a row. Raises the engine's failure, after which the statement is reset.
    bool Step();
    QVariant Column(int column) const;
    // The same without a variant. Null is an empty text and 0.
    const QString& Text(int column) const;
    qlonglong Number(int column) const;
    std::string_view Utf8(int column) const;
    QVariantList Row() const;
    // Back to before the first row; releases the locks that reading holds. Values stay bound.
    void Reset() noexcept;
    // The same, and forgets the values.
    void Clear() noexcept;

private:
    enum class Meaning { Plain, Boolean, TimeStamp };

    // The text read last from a column. Names, icon keys and the like come again from row to row, and sharing
    // the text is cheaper than making it anew.
    struct LastText {
        std::string bytes;
        QString text;
    };

    sqlite3_stmt* Prepared() const; // Kind::Closed
    void DescribeColumns();

    const Handle& m_file;
    sqlite3_stmt* m_statement = nullptr;
    QStringList m_parameterNames;
    QStringList m_columnNames;
    std::vector<Meaning> m_meanings;
    mutable std::vector<LastText> m_lastTexts;
};

struct StatementSlot {
    StatementSlot(const Handle& file, const QString& sql, bool kept) : statement(file, sql, kept) {}

    Statement statement;
    bool busy = true;
};

// The use of a statement until the end of the scope; a kept one then goes back to its connection, reset and
// cleared.
class StatementUse {
public:
    StatementUse(std::shared_ptr<const Handle> file, std::shared_ptr<StatementSlot> slot);
    StatementUse(StatementUse&& other) noexcept = default;
    StatementUse& operator=(StatementUse&& other) = delete;
    ~StatementUse();

    Statement* operator->() const { return &m_slot->statement; }

private:
    std::shared_ptr<const Handle> m_file; // outlives the statement
    std::shared_ptr<StatementSlot> m_slot;
};

} // namespace dao::sqlite
