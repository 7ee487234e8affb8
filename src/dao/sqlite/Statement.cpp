#include "dao/sqlite/Statement.h"
#include <QDateTime>
#include <sqlite3.h>

namespace dao::sqlite {

Statement::Statement(const Handle& file, const QString& sql, bool kept) : m_file(file)
{
    const QByteArray text = sql.toUtf8();
    const char* rest = nullptr;
    const int result = sqlite3_prepare_v3(file.Get(), text.constData(), static_cast<int>(text.size()) + 1,
                                          kept ? SQLITE_PREPARE_PERSISTENT : 0, &m_statement, &rest);
    if (result != SQLITE_OK)
        throw file.MakeError(result);
    if (!m_statement || !QByteArray(rest).trimmed().isEmpty()) {
        sqlite3_finalize(m_statement);
        throw Error(Kind::WrongUse, {sql});
    }
    file.Add(m_statement);
    for (int i = 1; i <= sqlite3_bind_parameter_count(m_statement); ++i) {
        const char* name = sqlite3_bind_parameter_name(m_statement, i);
        m_parameterNames.append(name ? QString::fromUtf8(name + 1) : QString());
    }
    DescribeColumns();
}

Statement::~Statement()
{
    m_file.End(m_statement);
}

// A column that shows a table's field unchanged has the field's declared type, which tells booleans and time
// stamps from the integers that they are stored as.
void Statement::DescribeColumns()
{
    const int columns = sqlite3_column_count(m_statement);
    for (int i = 0; i < columns; ++i) {
        m_columnNames.append(QString::fromUtf8(sqlite3_column_name(m_statement, i)));
        const QByteArray type = QByteArray(sqlite3_column_decltype(m_statement, i)).toUpper();
        m_meanings.push_back(type == "BOOLEAN"    ? Meaning::Boolean
                             : type == "DATETIME" ? Meaning::TimeStamp
                                                  : Meaning::Plain);
    }
    m_lastTexts.resize(m_meanings.size());
}

sqlite3_stmt* Statement::Prepared() const
{
    if (!m_file.IsOpen())
        throw Error(Kind::Closed);
    return m_statement;
}

bool Statement::IsSelect() const
{
    return sqlite3_stmt_readonly(Prepared()) != 0 && !m_columnNames.isEmpty();
}

void Statement::Bind(int parameter, const QVariant& value)
{
    sqlite3_stmt* statement = Prepared();
    const int index = parameter + 1;
    int result = SQLITE_OK;
    switch (value.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        result = sqlite3_bind_null(statement, index);
        break;
    case QMetaType::Bool:
        result = sqlite3_bind_int(statement, index, value.toBool() ? 1 : 0);
        break;
    case QMetaType::Double:
    case QMetaType::Float:
        result = sqlite3_bind_double(statement, index, value.toDouble());
        break;
    case QMetaType::QDateTime:
        result = value.toDateTime().isValid()
                     ? sqlite3_bind_int64(statement, index, value.toDateTime().toMSecsSinceEpoch())
                     : sqlite3_bind_null(statement, index);
        break;
    case QMetaType::QString: {
        const QByteArray text = value.toString().toUtf8();
        result = sqlite3_bind_text64(statement, index, text.constData(),
                                     static_cast<sqlite3_uint64>(text.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
        break;
    }
    default: {
        bool whole = false;
        const qlonglong number = value.toLongLong(&whole);
        if (!whole)
            throw Error(Kind::BadValue, {m_parameterNames.value(parameter)}, value.typeName());
        result = sqlite3_bind_int64(statement, index, number);
    }
    }
    if (result != SQLITE_OK)
        throw m_file.MakeError(result);
}

void Statement::Bind(const QVariantList& values)
{
    for (int i = 0; i < values.size(); ++i)
        Bind(i, values[i]);
}

bool Statement::Step()
{
    const int result = sqlite3_step(Prepared());
    if (result == SQLITE_ROW)
        return true;
    if (result == SQLITE_DONE)
        return false;
    const Error error = m_file.MakeError(result);
    Reset();
    throw error;
}

QVariant Statement::Column(int column) const
{
    sqlite3_stmt* statement = Prepared();
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER: {
        const qlonglong number = sqlite3_column_int64(statement, column);
        switch (m_meanings[static_cast<std::size_t>(column)]) {
        case Meaning::Boolean:
            return number != 0;
        case Meaning::TimeStamp:
            return QDateTime::fromMSecsSinceEpoch(number, Qt::UTC);
        case Meaning::Plain:
            return number;
        }
        return number;
    }
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    case SQLITE_NULL:
        return {};
    default:
        return Text(column);
    }
}

const QString& Statement::Text(int column) const
{
    static const QString null = QStringLiteral("");
    const std::string_view bytes = Utf8(column);
    if (!bytes.data())
        return null;
    LastText& last = m_lastTexts[static_cast<std::size_t>(column)];
    if (last.bytes != bytes || last.text.isNull()) {
        last.bytes = bytes;
        last.text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }
    return last.text;
}

std::string_view Statement::Utf8(int column) const
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))};
}

qlonglong Statement::Number(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

QVariantList Statement::Row() const
{
    QVariantList row;
    const int columns = static_cast<int>(m_columnNames.size());
    row.reserve(columns);
    for (int i = 0; i < columns; ++i)
        row.append(Column(i));
    return row;
}

void Statement::Reset() noexcept
{
    if (m_file.IsOpen())
        sqlite3_reset(m_statement);
}

void Statement::Clear() noexcept
{
    Reset();
    if (m_file.IsOpen())
        sqlite3_clear_bindings(m_statement);
}

StatementUse::StatementUse(std::shared_ptr<const Handle> file, std::shared_ptr<StatementSlot> slot)
    : m_file(std::move(file)),
      m_slot(std::move(slot))
{
    m_slot->busy = true;
}

StatementUse::~StatementUse()
{
    if (!m_slot)
        return;
    m_slot->statement.Clear();
    m_slot->busy = false;
}

} // namespace dao::sqlite
