#pragma once

#include "dao/records/Engine.h"
#include "dao/records/TableShape.h"

namespace dao::postgresql {

// All tables of a database, by lower-case name.
using TableShapes = QHash<QString, std::shared_ptr<const TableShape>>;
TableShapes ReadTableShapes(Engine& engine);

// What that asks the server.
QList<Request> TableRequests();

} // namespace dao::postgresql
