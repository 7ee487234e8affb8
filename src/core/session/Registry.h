#pragma once

#include <QList>
#include <QString>
#include <utility>

struct IDbSession;

// System-wide settings, in the table of settings of the open database. Neither operation ever fails visibly:
// a failing read gives the default, a failing write stores nothing.
QString RegistryGet(IDbSession& session, const QString& key, const QString& fallback);
void RegistrySet(IDbSession& session, const QString& key, const QString& value);

// Stores all of these values or none, in one transaction. Raises Error or dao::Error when that fails: for
// windows that must not close over a setting that was not stored.
void RegistryStore(IDbSession& session, const QList<std::pair<QString, QString>>& values);
