#include "dao/base/Passwords.h"
#include "dao/base/Error.h"
#include <sodium.h>

namespace dao {

namespace {

void EnsureSodium()
{
    if (sodium_init() < 0)
        throw Error(Kind::Engine, {"libsodium"}, "libsodium cannot be initialised");
}

// The same password typed with a combining accent or as one character has to give the same bytes.
QByteArray BytesOf(const QString& password)
{
    return password.normalized(QString::NormalizationForm_C).toUtf8();
}

} // namespace

PasswordCost PasswordCost::Interactive()
{
    return {crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE};
}

PasswordCost PasswordCost::Lowest()
{
    return {crypto_pwhash_OPSLIMIT_MIN, crypto_pwhash_MEMLIMIT_MIN};
}

QByteArray HashPassword(const QString& password, const PasswordCost& cost)
{
    EnsureSodium();
    char hash[crypto_pwhash_STRBYTES] = {};
    QByteArray bytes = BytesOf(password);
    const int result = crypto_pwhash_str(
        hash, bytes.constData(), static_cast<unsigned long long>(bytes.size()), cost.operations, cost.memory);
    sodium_memzero(bytes.data(), static_cast<std::size_t>(bytes.size()));
    if (result != 0)
        throw Error(Kind::Engine, {"Argon2id"}, "not enough memory for Argon2id");
    return QByteArray(hash);
}

bool PasswordMatches(const QByteArray& hash, const QString& password)
{
    EnsureSodium();
    // libsodium reads the whole array, not only up to the terminating zero.
    char stored[crypto_pwhash_STRBYTES] = {};
    if (hash.size() >= static_cast<qsizetype>(sizeof stored))
        return false;
    std::copy(hash.begin(), hash.end(), stored);
    QByteArray bytes = BytesOf(password);
    const int result =
        crypto_pwhash_str_verify(stored, bytes.constData(), static_cast<unsigned long long>(bytes.size()));
    sodium_memzero(bytes.data(), static_cast<std::size_t>(bytes.size()));
    return result == 0;
}

QString RandomText(int length)
{
    EnsureSodium();
    static constexpr char characters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    QString text;
    for (int i = 0; i < length; ++i)
        text += QLatin1Char(characters[randombytes_uniform(sizeof characters - 1)]);
    return text;
}

} // namespace dao
