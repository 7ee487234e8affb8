#pragma once

#include <map>
#include <string>
#include <vector>

namespace testing_json {

// As much of JSON as the golden files use. Scalars keep their spelling ("12", "true", "null"), strings are
// unescaped.
struct Value {
    enum class Kind { Scalar, String, Array, Object } kind = Kind::Scalar;
    std::string text;
    std::vector<Value> items;
    std::map<std::string, Value> members;

    const Value& operator[](const std::string& name) const; // throws std::out_of_range
    bool Has(const std::string& name) const { return members.count(name) != 0; }
};

// Throws std::runtime_error for a file that is absent or no JSON.
Value ReadFile(const std::string& path);

// {"a":{"b":1},"c":[2]} as a.b=1, c.0=2.
std::map<std::string, std::string> Flatten(const Value& value);

} // namespace testing_json
