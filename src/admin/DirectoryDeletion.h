#pragma once

#include "admin/AdminServices.h"

#include <QString>
#include <vector>

struct DeletionItem {
    qint32 id = 0;
    QString callsign;
};

// Asks as prescribed and deletes entries of the directory; those that take part in dynamic regrouping stay,
// with a warning each. A deletion that fails is only noted in the program's log file; the entry stays.
// Returns whether any was deleted.
bool DeleteEntries(const AdminServices& services, const std::vector<DeletionItem>& items);
