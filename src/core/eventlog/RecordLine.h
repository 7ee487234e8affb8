#pragma once

#include "core/eventlog/AttentionAct.h"
#include "core/eventlog/RegroupChange.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <optional>

// As the database numbers them.
enum class MessageWay { Unknown, In, Out };

// One record of the table event on its way there; or what is stored in turn with them: a change of duty that
// came with one, where `from` is on duty from now on if `type` is 1, and off duty otherwise; or a regroup
// that the radio has confirmed; or what becomes of somebody who waits.
struct LogRecord {
    QString id; // made once, so that the database stores it once however often it is sent
    QDateTime time;
    int type = 0;
    QString desc;
    QString from;
    QString to;
    bool isDuty = false;
    std::optional<RegroupChange> regroup{};
    std::optional<AttentionAct> attention{};
    // Who took the record, and where; empty for those of older programs.
    QString operatorName{};
    QString console{};
    // The parties' numbers at that time, where callsigns stand for them; empty where they were not known.
    QString fromNumber{};
    QString toNumber{};
    MessageWay way = MessageWay::Unknown;

    bool IsEvent() const { return !isDuty && !regroup && !attention; }
    AttentionActor Actor() const { return {id, time, operatorName, console}; }
};

// A record as a line of a file, a JSON object.
QByteArray LineOf(const LogRecord& record);
// Nothing for a line that was cut short or is none, or says what this program does not know.
std::optional<LogRecord> ParseLine(const QByteArray& line);
