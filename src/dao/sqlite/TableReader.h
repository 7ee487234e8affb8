#pragma once

#include "dao/records/Engine.h"
#include "dao/records/TableShape.h"
#include "dao/sqlite/Handle.h"

namespace dao::sqlite {

// The table, in the engine's own file, as its declaration describes it. Kind::NoSuchTable.
std::shared_ptr<const TableShape> ReadTableShape(Engine& engine, const Handle& file, const QString& table);

} // namespace dao::sqlite
