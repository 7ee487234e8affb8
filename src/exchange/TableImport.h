#pragma once

#include <QString>
#include <vector>

// What importing one line of a file does to a table.
enum class ImportOutcome { Added, Changed, Unchanged, Removed, Refused };

struct ImportLine {
    int line; // in the file, from 1; 0 for an entry that is not in it
    QString entry;
    ImportOutcome outcome;
    QString reason; // why it is refused

    bool operator==(const ImportLine&) const = default;
};

// The lines of a file on their way into a table of the database. What changes is found out before anything
// is stored, and is the same that is then stored if both happen within one transaction. Errors of the
// database are dao::Error.
class TableImport {
public:
    virtual ~TableImport() = default;

    // What each line would do to the table as it is now. Once.
    virtual std::vector<ImportLine> Check() = 0;
    // Stores all that Check has not refused; within a transaction.
    virtual void Store() = 0;
    // What a person has to know beforehand; mostly empty.
    virtual QString Notice() const { return {}; }
};
