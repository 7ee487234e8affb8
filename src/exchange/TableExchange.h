#pragma once

#include "exchange/ExchangedTable.h"

class QWidget;

// Each lets the operator pick a file first. The files may be on a share that hangs: that holds no window.
namespace TableExchange {

// Shows what would change and imports it. Whether anything was imported.
bool Import(const ExchangeServices& services, const ExchangedTable& table, QWidget& owner);
// Says when the file is written, or why it is not.
void Export(const ExchangeServices& services, const ExchangedTable& table, QWidget& owner);

} // namespace TableExchange
