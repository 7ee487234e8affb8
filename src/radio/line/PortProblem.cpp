#include "radio/line/PortProblem.h"

#include "core/texts/FormatMessage.h"
#include "radio/base/TextIds.h"

namespace {

int TextIdOf(PortProblem::Kind kind)
{
    switch (kind) {
    case PortProblem::Kind::Absent:
        return RadioText::PortAbsent;
    case PortProblem::Kind::NotSerial:
        return RadioText::PortNoSerial;
    case PortProblem::Kind::NotPermitted:
        return RadioText::PortNotPermitted;
    case PortProblem::Kind::LockLeft:
        return RadioText::PortLockLeft;
    case PortProblem::Kind::Busy:
        return RadioText::PortBusy;
    case PortProblem::Kind::BusyBy:
        return RadioText::PortBusyBy;
    case PortProblem::Kind::BadAddress:
        return RadioText::PortBadAddress;
    case PortProblem::Kind::HostUnknown:
        return RadioText::PortHostUnknown;
    case PortProblem::Kind::HostRefused:
        return RadioText::PortHostRefused;
    case PortProblem::Kind::HostSilent:
        return RadioText::PortHostSilent;
    case PortProblem::Kind::Other:
        break;
    }
    return RadioText::PortOther;
}

} // namespace

QString PortProblemText(const PortProblem& problem, const IStringSource& strings)
{
    return FormatMessage(strings, TextIdOf(problem.kind), problem.values);
}
