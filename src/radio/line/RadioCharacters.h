#pragma once

#include <QString>

// The first character that radios cannot be sent, since code page 437 has not got it; empty when there is
// none.
QString FirstUnsendable(const QString& text);
