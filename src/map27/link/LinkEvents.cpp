#include "map27/link/LinkEvents.h"

namespace map27 {

const char* LinkFailureText(LinkFailure failure)
{
    switch (failure) {
    case LinkFailure::Silent:
        return "nothing valid received for too long";
    case LinkFailure::RetriesUsedUp:
        return "message repeated too often without an acknowledgement";
    case LinkFailure::PeerReset:
        return "the other end asked for a new link";
    case LinkFailure::WrongAcknowledgement:
        return "acknowledgement of something that was not sent";
    case LinkFailure::OutsideWindow:
        return "message numbered outside the window";
    }
    return "unknown";
}

} // namespace map27
