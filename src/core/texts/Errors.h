#pragma once

#include <QString>
#include <exception>
#include <string>

struct IStringSource;

// The one exception type of the program above the database and addressing layers. The description is already
// the sentence that a person reads.
class Error : public std::exception {
public:
    Error(quint32 code, QString description);

    quint32 Code() const { return m_code; }
    const QString& Description() const { return m_description; }
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    quint32 m_code;
    QString m_description;
    std::string m_what;
};

namespace ErrorCode {
constexpr quint32 First = 0x80040000; // first user-defined code; catalogue errors are First + id
constexpr quint32 NoFile = First + 1;
constexpr quint32 LogonCancelled = First + 3;
constexpr quint32 NumberingNotConfigured = First + 204;
constexpr quint32 General = 0x80004005; // a failure that nobody distinguishes by its code
} // namespace ErrorCode

// Raises the error whose code is First + id and whose description is the catalogue text of that id.
[[noreturn]] void RaiseCatalogueError(const IStringSource& strings, int id);

// The sentence for any exception: an Error's description, a dao::Error's catalogue text, else what().
QString DescribeError(const std::exception& failure, const IStringSource& strings);

// The operator did not want to wait for the database any longer: asking whether to try again is idle.
bool WasGivenUp(const std::exception& failure);

// The code of an Error; General for any other exception.
quint32 CodeOf(const std::exception& failure);
