#pragma once

#include "dao/records/Database.h"

#include <QMap>
#include <optional>

namespace dao {

// The table of the settings that hold for all consoles, each a text under its key. Errors are dao::Error.
class RegistryTable {
public:
    static inline const QString Table = QStringLiteral("kyn_registry");

    // For reading all of them by position.
    static inline const QString KeyField = QStringLiteral("Key");
    static inline const QString ValueField = QStringLiteral("Value");

    // Nothing when the key is not there; a value of Null is an empty text. Keys keep their case.
    static std::optional<QString> Find(Database& database, const QString& key);
    static Reading ReadingOf(const QString& key); // what Find reads
    static void Store(Database& database, const QString& key, const QString& value);
    // By their keys.
    static QMap<QString, QString> All(Database& database);
    // Nothing happens when the key is not there.
    static void Remove(Database& database, const QString& key);
};

} // namespace dao
