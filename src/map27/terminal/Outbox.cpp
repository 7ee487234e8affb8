#include "map27/terminal/Outbox.h"

#include "map27/codec/Causes.h"

namespace map27 {

void Outbox::TellStatus(const StatusMessage& message, const Octets& octets)
{
    const Address from = message.party.address;
    if (message.status <= HighestStatus)
        return Tell(StatusReceived{from, message.status});
    ++counters.statusOutOfRange;
    Report(ReportKind::StatusOutOfRange, "status " + std::to_string(message.status) + " from " + ToText(from),
           octets);
}

void Outbox::TellText(const ShortDataMessage& message, const Octets& octets)
{
    if (!IsKnown(message.data.coding)) {
        ++counters.unknownCodings;
        Report(ReportKind::UnknownCoding, "coding " + std::to_string(static_cast<int>(message.data.coding)),
               octets);
    }
    Tell(TextReceived{message.party.address, DecodeText(message.data), message.data.coding});
}

void Outbox::Report(ReportKind kind, std::string text, const Octets& octets)
{
    Tell(map27::Report{kind, std::move(text), octets});
}

void Outbox::Report(ReportKind kind, const RadioSignal& signal)
{
    Report(kind, Describe(signal), signal.octets);
}

std::string Outbox::Describe(const RadioSignal& signal)
{
    return TypeName(signal.type, Direction::FromRadio) + " (" + CauseText(signal.type, signal.cause) + ")";
}

void Outbox::ReportLate(const RadioSignal& signal)
{
    ++counters.late;
    Report(ReportKind::Late, signal);
}

void Outbox::ReportNotUsed(std::string text, const Octets& octets)
{
    ++counters.notUsed;
    Report(ReportKind::NotUsed, std::move(text), octets);
}

} // namespace map27
