#pragma once

#include "dao/Workspace.h"
#include <QByteArray>
#include <QString>

namespace dao {

// Argon2id hash of a password in its printable form, which carries salt and cost. Kind::Engine when there is
// not enough memory.
QByteArray HashPassword(const QString& password, const PasswordCost& cost);

// False, too, for a text that is no such hash.
bool PasswordMatches(const QByteArray& hash, const QString& password);

// `length` characters from a cryptographic random source: capital letters and digits.
QString RandomText(int length);

} // namespace dao
