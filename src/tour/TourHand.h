#pragma once

#include "tour/TourWord.h"

#include <vector>

// The words of the tour that do something: synthetic clicks and keys on the real windows. Each raises Error
// when a person could not have done it, because the thing is missing, hidden or disabled.
std::vector<TourWord> TourHandWords();
