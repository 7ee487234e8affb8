#pragma once

#include "radio/base/LinkStatus.h"
#include "radio/line/LineReports.h"

struct IStringSource;

// As the operator knows it.
struct LinePort {
    QString name;
    int bitsPerSecond;
};

// What the line's condition is to the operator, and the sentence about it; none while the link is ready.
LinkStatus::State LinkStateOf(LineCondition::Kind kind);
QString LineConditionText(const LineCondition& condition, const LinePort& port, const IStringSource& strings);
