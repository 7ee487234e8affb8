#pragma once

#include <QString>

struct IStringSource;

// The guided tour: the real console and a real simulated radio on a pseudo terminal, operated by synthetic
// clicks and keys as the script says. Leaves pictures, tour.log and the radio's trace wire.jsonl in the
// folder. Returns 0, or 1 after the first step that failed. Raises Error when it cannot even begin, for
// instance because of a mistake in the script; then nothing was done.
int RunConsoleTour(const IStringSource& strings, const QString& folder, const QString& script);

// The script that lies beside the program.
QString DefaultTourScript();
