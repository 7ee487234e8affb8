#pragma once

#include "dao/records/TableShape.h"

namespace dao::postgresql {

// The table as the server's catalogue describes it. Kind::NoSuchTable.
std::shared_ptr<const TableShape> ReadTableShape(Engine& engine, const QString& table);

} // namespace dao::postgresql
