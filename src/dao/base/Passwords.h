#pragma once

#include <QByteArray>
#include <QString>
#include <cstddef>

namespace dao {

// What a new password's Argon2id hash costs. Stored passwords keep the cost that they were made with.
struct PasswordCost {
    unsigned long long operations;
    std::size_t memory; // bytes

    static PasswordCost Interactive(); // about 50 ms and 64 MiB
    static PasswordCost Lowest(); // the least that libsodium accepts; for trial databases that guard nothing
};

// Argon2id hash of a password in its printable form, which carries salt and cost. Kind::Engine when there is
// not enough memory.
QByteArray HashPassword(const QString& password, const PasswordCost& cost);

// False, too, for a text that is no such hash.
bool PasswordMatches(const QByteArray& hash, const QString& password);

// `length` characters from a cryptographic random source: capital letters and digits.
QString RandomText(int length);

} // namespace dao
