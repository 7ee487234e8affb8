#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// A row of a table of tests/data: its cells, tabs between them, with \n, \t, \\ and \xHH for what a line
// cannot show.
using TableRow = std::vector<std::string>;

inline TableRow CellsOf(const std::string& line)
{
    TableRow cells(1);
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '\t') {
            cells.emplace_back();
        } else if (line[at] != '\\') {
            cells.back() += line[at];
        } else if (const char code = line.at(++at); code == 'x') {
            cells.back() += static_cast<char>(std::stoi(line.substr(at + 1, 2), nullptr, 16));
            at += 2;
        } else {
            cells.back() += code == 'n' ? '\n' : code == 't' ? '\t' : code == 'r' ? '\r' : code;
        }
    }
    return cells;
}

// The rows below the line "== section", of which there are as many. Lines that begin with "# " are remarks.
inline std::vector<TableRow> ReadTable(const std::string& file, const std::string& section, std::size_t count)
{
    std::ifstream lines(TEST_DATA_DIR "/" + file);
    std::vector<TableRow> rows;
    bool here = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("== "))
            here = line == "== " + section;
        else if (here && !line.empty() && !line.starts_with("# "))
            rows.push_back(CellsOf(line));
    }
    EXPECT_EQ(rows.size(), count) << file << ": " << section;
    return rows;
}
