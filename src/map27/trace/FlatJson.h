#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace map27 {

// One JSON object of strings and whole numbers on one line, as traces are made of. Nothing else is read: no
// lists, no objects within.
class FlatJson {
public:
    struct Problem {
        std::size_t column = 1; // in octets, from 1
        std::string reason;     // in plain words
    };

    static std::variant<FlatJson, Problem> Read(std::string_view line);

    struct Value {
        std::variant<std::string, std::int64_t> value;
        std::size_t column; // where it begins; of a string, behind the quote

        const std::string* Text() const { return std::get_if<std::string>(&value); }
        const std::int64_t* Number() const { return std::get_if<std::int64_t>(&value); }
    };
    // Null when there is none of that name; of two the first.
    const Value* Find(std::string_view name) const;

private:
    struct Member {
        std::string name;
        Value value;
    };

    std::vector<Member> m_members;
};

// With quotes, and escaped where needed. UTF-8 stays as it is, and what is none becomes U+FFFD.
std::string JsonQuoted(std::string_view text);

} // namespace map27
