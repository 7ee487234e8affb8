#pragma once

#include "dao/base/Location.h"
#include <QList>
#include <QPair>
#include <QString>

namespace dao::sqlite {

// Copies both files of a database as they are at one moment, into new ones for whoever may open the old ones.
// Others can go on reading; who wants to write waits until it is done. Kind::FileExists when a target exists;
// on failure no target is left.
void CopyFiles(const Location& from, const Location& to);

// The same for files that nobody changes, which may lie on a medium that cannot be written to.
void CopyRestingFiles(const Location& from, const Location& to);

// Kind::WrongPassword, Kind::NotPermitted when the account is no administrator. Files of an older schema stay
// so.
void RequireAdministrator(const Location& location, const QString& name, const QString& password);

// How many records each table of the database has, by name.
QList<QPair<QString, qlonglong>> CountRecords(const Location& location);

} // namespace dao::sqlite
