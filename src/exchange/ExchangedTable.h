#pragma once

#include "exchange/CsvTable.h"
#include "exchange/TableImport.h"

#include <QString>
#include <functional>
#include <memory>

struct IDbSession;
struct IPrompt;
struct IStringSource;

// All must outlive the windows that are given them.
struct ExchangeServices {
    IDbSession& session;
    IPrompt& prompt;
    const IStringSource& strings;
};

// A table that a window imports and exports.
struct ExchangedTable {
    QString name; // in the database
    QString file; // proposed for an export
    CsvTable::Columns columns;
    // `option` is whether the choice that the window offers was made.
    std::function<std::unique_ptr<TableImport>(CsvTable table, bool option)> import;
    // What a file of it holds; counts its lines. Raises Error or dao::Error.
    std::function<QString(int& count)> text;
    int optionText = 0;      // names a choice that changes what is imported; 0 when there is none
    bool mayLeaveOut = true; // refused lines, importing the others
};
