#pragma once

#include <QString>
#include <string>
#include <string_view>
#include <vector>

// The texts of the directory in lower case, one after the other: a hundred thousand entries are looked
// through between two keys.
class DirectorySearch {
public:
    void Reserve(std::size_t rows, std::size_t octets);
    // The next row, in UTF-8.
    void Add(std::string_view callsign, std::string_view ident, std::string_view name);

    // At most so many rows that have the text: those whose callsign begins so, then those whose ident does,
    // then those whose name or a word of it does, then those that hold it anywhere. Upper and lower case are
    // the same.
    std::vector<std::size_t> Find(const QString& text, std::size_t most) const;

private:
    struct Row {
        quint32 callsign;
        quint32 ident;
        quint32 name;
    };
    void Append(std::string_view text);
    std::size_t RowAt(std::size_t place) const;

    std::string m_texts;
    std::vector<Row> m_rows;
};
