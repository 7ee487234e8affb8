#pragma once

#include <QString>

struct IStringSource;

// The guided tour: the real console and a real simulated radio on a pseudo terminal, operated by synthetic
// clicks and keys. Leaves pictures, tour.log and the radio's trace wire.jsonl in the folder. Returns 0, or 1
// after the first step that failed. Raises Error when it cannot even begin.
int RunConsoleTour(const IStringSource& strings, const QString& folder);
