#pragma once

#include <QString>

struct IDbSession;

// System-wide settings, in the table kyn_registry of the open database. Neither operation ever fails visibly:
// a failing read gives the default, a failing write stores nothing.
QString RegistryGet(IDbSession& session, const QString& key, const QString& fallback);
void RegistrySet(IDbSession& session, const QString& key, const QString& value);
