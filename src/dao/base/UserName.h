#pragma once

#include <QString>

namespace dao {

// Kind::BadUserName, unless the name has 1 to 64 characters, no blanks at its ends and no control characters.
void RequireUserName(const QString& name);

} // namespace dao
