#pragma once

#include "tour/TourWord.h"

#include <vector>

// The words of the tour that look at the windows.
std::vector<TourWord> TourLookWords();
