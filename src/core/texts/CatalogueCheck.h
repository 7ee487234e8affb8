#pragma once

#include "core/texts/CatalogueFile.h"

#include <QStringList>

// What is wrong with a satellite catalogue beside the built-in one, a sentence each, by the numbers of the
// texts; nothing when it is complete. For translators, so in English like the catalogue's own comments.
QStringList ProblemsOf(const Catalogue& satellite);
