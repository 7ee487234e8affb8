#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <libpq-fe.h>
#include <memory>
#include <string_view>

namespace dao::postgresql {

// What a statement returned. Rows and columns count from 0. It is in memory as a whole and does not need the
// connection any more.
class Result {
public:
    explicit Result(PGresult* result) : m_result(result, PQclear) {}

    PGresult* Handle() const { return m_result.get(); }
    // It did what it was to do, whether it has rows or not.
    bool IsSuccess() const;
    int Rows() const { return PQntuples(m_result.get()); }
    int Columns() const { return PQnfields(m_result.get()); }
    QStringList ColumnNames() const;
    // How many records a changing statement changed.
    int Changed() const { return QByteArray(PQcmdTuples(m_result.get())).toInt(); }

    QVariant Value(int row, int column) const;
    // The same without a variant. Null is an empty text and 0.
    QString Text(int row, int column) const;
    std::string_view Utf8(int row, int column) const;
    qlonglong Number(int row, int column) const;
    QVariantList Row(int row) const;

private:
    QByteArray Bytes(int row, int column) const; // of the result, not a copy

    std::unique_ptr<PGresult, void (*)(PGresult*)> m_result;
};

// The server's types that differ from a text (their numbers are part of its interface).
namespace Types {
constexpr Oid Boolean = 16;
constexpr Oid Int8 = 20;
constexpr Oid Int2 = 21;
constexpr Oid Int4 = 23;
constexpr Oid Float4 = 700;
constexpr Oid Float8 = 701;
constexpr Oid Timestamptz = 1184;
constexpr Oid Numeric = 1700;
} // namespace Types

// A value as the text of a parameter, which the server reads as the parameter's type; a null QByteArray for
// Null. Kind::BadValue with the name given when it has no such form.
QByteArray ParameterText(const QVariant& value, const QString& name);

} // namespace dao::postgresql
