#pragma once

#include <QStringList>

namespace dao {

// One thing that CheckDatabase found: a catalogue sentence and the values for its placeholders.
struct Finding {
    enum class Severity { Warning, Error };

    Severity severity;
    int textId;
    QStringList values;
};

// What MigrateDatabase did. The versions are those of the database; `copies` lists the files copied before.
struct MigrationReport {
    int fromVersion;
    int toVersion;
    QStringList copies;
};

} // namespace dao
