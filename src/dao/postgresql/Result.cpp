#include "dao/postgresql/Result.h"
#include "dao/base/Error.h"
#include <QDateTime>
#include <QTimeZone>

namespace dao::postgresql {

namespace {

// "2024-03-31 01:30:00.007+00": the session's time zone is UTC.
QDateTime ParseTime(const QByteArray& text)
{
    const auto number = [&](qsizetype from, qsizetype length) { return text.mid(from, length).toInt(); };
    if (text.size() < 19 || text[4] != '-')
        return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs).toUTC();
    int milliseconds = 0;
    if (text.size() > 20 && text[19] == '.') {
        qsizetype end = 20;
        while (end < text.size() && text[end] >= '0' && text[end] <= '9')
            ++end;
        milliseconds = text.mid(20, end - 20).leftJustified(3, '0', true).toInt();
    }
    return QDateTime(QDate(number(0, 4), number(5, 2), number(8, 2)),
                     QTime(number(11, 2), number(14, 2), number(17, 2), milliseconds), Qt::UTC);
}

} // namespace

bool Result::IsSuccess() const
{
    const ExecStatusType status = PQresultStatus(m_result.get());
    return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
}

QStringList Result::ColumnNames() const
{
    QStringList names;
    for (int i = 0; i < Columns(); ++i)
        names.append(QString::fromUtf8(PQfname(m_result.get(), i)));
    return names;
}

QByteArray Result::Bytes(int row, int column) const
{
    return QByteArray::fromRawData(PQgetvalue(m_result.get(), row, column),
                                   PQgetlength(m_result.get(), row, column));
}

QVariant Result::Value(int row, int column) const
{
    if (PQgetisnull(m_result.get(), row, column) != 0)
        return {};
    const QByteArray bytes = Bytes(row, column);
    switch (PQftype(m_result.get(), column)) {
    case Types::Boolean:
        return bytes == "t";
    case Types::Int2:
    case Types::Int4:
    case Types::Int8:
        return bytes.toLongLong();
    case Types::Float4:
    case Types::Float8:
    case Types::Numeric:
        return bytes.toDouble();
    case Types::Timestamptz:
        return ParseTime(bytes);
    default:
        return QString::fromUtf8(bytes);
    }
}

QString Result::Text(int row, int column) const
{
    return QString::fromUtf8(Bytes(row, column));
}

std::string_view Result::Utf8(int row, int column) const
{
    return {PQgetvalue(m_result.get(), row, column),
            static_cast<std::size_t>(PQgetlength(m_result.get(), row, column))};
}

qlonglong Result::Number(int row, int column) const
{
    const QByteArray bytes = Bytes(row, column);
    switch (PQftype(m_result.get(), column)) {
    case Types::Boolean:
        return bytes == "t" ? 1 : 0;
    case Types::Timestamptz:
        return bytes.isEmpty() ? 0 : ParseTime(bytes).toMSecsSinceEpoch();
    default:
        return bytes.toLongLong();
    }
}

QVariantList Result::Row(int row) const
{
    QVariantList values;
    values.reserve(Columns());
    for (int i = 0; i < Columns(); ++i)
        values.append(Value(row, i));
    return values;
}

QByteArray ParameterText(const QVariant& value, const QString& name)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return {};
    case QMetaType::Bool:
        return value.toBool() ? "1" : "0"; // a number and a truth for the server
    case QMetaType::QDateTime: {
        const QDateTime time = value.toDateTime();
        return time.isValid() ? time.toUTC().toString(Qt::ISODateWithMs).toLatin1() : QByteArray();
    }
    default:
        break;
    }
    const QByteArray text = value.toString().toUtf8();
    if (text.contains('\0'))
        throw Error(Kind::BadValue, {name}, value.typeName()); // texts hold every character but this one
    return text.isNull() ? QByteArray("") : text;              // a null QString is text, not Null
}

} // namespace dao::postgresql
