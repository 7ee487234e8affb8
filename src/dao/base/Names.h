#pragma once

#include <QString>
#include <QStringList>

// Names of tables and fields, as SQL texts hold them and as callers spell them.
namespace dao {

// A name between double quotes.
QString Quoted(const QString& name);
QString QuotedList(const QStringList& names);
// "a"=? AND "b"=?
QString AllEqual(const QStringList& names);
// Position of a field by its name without regard to case. Kind::NoSuchField.
int FieldPosition(const QStringList& names, const QString& name);

} // namespace dao
