#pragma once

#include "addressing/RadioNumbering.h"

#include <QString>

// Reads what a radio would report about itself: a JSON object with the fields of RadioNumbering, all of them
// whole numbers. Other fields are ignored. Raises Error that names file, field and reason.
RadioNumbering ReadOwnNumbering(const QString& path);
