#pragma once

#include "tour/TourWord.h"

#include <QMap>
#include <vector>

class Demonstration;

// The words of the tour that need more than the windows: the simulated radio, the files, and what other
// consoles do to the database meanwhile. They refer to the demonstration.
std::vector<TourWord> TourStageWords(Demonstration& demonstration);

// What the tour types: the demonstration's port, files and accounts, by the names that scripts use for them.
QMap<QString, QString> TourStageNames(const Demonstration& demonstration);
