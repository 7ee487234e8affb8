#pragma once

#include "dao/TableShape.h"

namespace dao::sqlite {

class Connection;

// The table as its declaration describes it. Kind::NoSuchTable.
std::shared_ptr<const TableShape> ReadTableShape(Connection& connection, const QString& table);

} // namespace dao::sqlite
