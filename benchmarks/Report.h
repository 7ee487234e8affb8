#pragma once

#include <cstdio>
#include <optional>

// A figure for the tables of ./bench, as one line of JSON on standard output. `bare`: what the same work
// takes without this system. `size`: of what it was measured on, where the cost may grow with it.
inline void PrintRow(const char* what, double ours, const char* unit, std::optional<double> bare = {},
                     std::optional<long> size = {})
{
    std::printf("{\"row\": \"%s\", \"ours\": %.6g, \"unit\": \"%s\"", what, ours, unit);
    if (bare)
        std::printf(", \"bare\": %.6g", *bare);
    if (size)
        std::printf(", \"size\": %ld", *size);
    std::puts("}");
    std::fflush(stdout);
}
