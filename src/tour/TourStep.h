#pragma once

#include <QString>
#include <functional>
#include <vector>

// One line of a step: something that is done, or something that must then be seen.
struct TourLine {
    QString place; // "calls.tour:12", for the log
    // Raises Error when a person could not have done it.
    std::function<void()> act;
    // Set instead of `act`: empty when it is seen, else what is seen instead.
    std::function<QString()> look;
    int patience = 10000; // ms since the last deed until it must be seen
};

struct TourStep {
    QString name;     // of its picture and its line in tour.log
    QString expected; // in words, for the line of a failure
    std::vector<TourLine> lines;
};
