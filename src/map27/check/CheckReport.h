#pragma once

#include "map27/link/Time.h"
#include "map27/trace/Finding.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace map27 {

// What a check of a radio has found.
struct CheckReport {
    enum class Verdict {
        Good,
        Noted,    // allowed, but worth knowing
        Deviates, // from the standard
        NoAnswer,
        LeftOut,
    };

    struct Item {
        std::string_view name; // one word that stays the same, for scripts
        Verdict verdict;
        std::string text; // in English
        std::optional<Milliseconds> took{};
    };

    // What struck about the radio's frames, once a kind.
    struct Struck {
        Finding first;
        int count = 1;
    };

    // Of a number of times.
    struct Times {
        std::vector<Milliseconds> all;

        void Add(Milliseconds time) { all.push_back(time); }
        // 0..100 percent of them are no longer; 0 when there are none.
        Milliseconds Quantile(int percent) const;
    };

    // What the radio brought meanwhile: nobody but the reader of the report learns of it.
    struct Arrival {
        Milliseconds at; // since the check began
        bool isEmergency;
        std::string text; // in English
    };

    std::vector<Item> items;
    std::vector<Arrival> received;
    std::vector<Struck> struck;
    Times acknowledgements; // of the link
    Times answers;          // to questions
    int linksLost = 0;      // without having been asked to
    bool linkCameUp = false;

    void Add(std::string_view name, Verdict verdict, std::string text,
             std::optional<Milliseconds> took = std::nullopt);
    void Add(const Finding& finding);

    bool HasEmergency() const;
    // Items and kinds of findings that deviate from the standard, or were not answered.
    int Deviations() const;
};

// Where and when it was done; all of it is shown as it is.
struct CheckFrame {
    std::string program;
    std::string time;
    std::string port;
    unsigned bitsPerSecond = 0;
};

std::string CheckReportText(const CheckReport& report, const CheckFrame& frame);
std::string CheckReportJson(const CheckReport& report, const CheckFrame& frame);

} // namespace map27
