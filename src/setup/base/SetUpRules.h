#pragma once

#include "addressing/RadioNumbering.h"
#include "numbering/FleetRules.h"

#include <QString>
#include <vector>

struct IStringSource;

// What the assistant accepts, and what follows from it. No windows.
namespace SetUpRules {

// What is typed for a database on a server.
struct ServerEntry {
    QString server; // host[:port], several separated by commas
    QString name;
    QString certificate; // file with that of the authority
};
// Why it cannot be used; empty when it can.
QString ProblemOf(const ServerEntry& entry, const IStringSource& strings);
// A server whose certificate is checked.
QString TargetOf(const ServerEntry& entry);

// Why a new database cannot be made at the place, or an existing one cannot be opened; empty when it can.
QString ProblemOfNewFile(const QString& file, const IStringSource& strings);
QString ProblemOfExistingFile(const QString& file, const IStringSource& strings);

// Why the account cannot be the first administrator; empty when it can.
QString ProblemOfAccount(const QString& user, const QString& password, const QString& repeated,
                         const IStringSource& strings);

// A fleet as it is entered; digits follow from its size.
FleetEntry EntryOf(FleetType type, const QString& prefix, const QString& number, const QString& size,
                   const IStringSource& strings);
// The fleets that the radio reports as its own.
std::vector<FleetEntry> EntriesOf(const RadioNumbering& numbering, const IStringSource& strings);
// The first thing that is wrong with the fleets; empty when they can be stored.
QString ProblemOf(const std::vector<FleetEntry>& fleets, const IStringSource& strings);
// How the first and the last radio of fleets without a problem are dialled.
QString ExampleOf(const std::vector<FleetEntry>& fleets, const IStringSource& strings);

} // namespace SetUpRules
