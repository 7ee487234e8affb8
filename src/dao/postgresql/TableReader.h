#pragma once

#include "dao/TableShape.h"

namespace dao::postgresql {

class Connection;

// The table as the server's catalogue describes it. Kind::NoSuchTable.
std::shared_ptr<const TableShape> ReadTableShape(Connection& connection, const QString& table);

} // namespace dao::postgresql
