#include "map27/terminal/TerminalEvents.h"

namespace map27 {

namespace {

std::string OutOfLimit(const Refusal& refusal)
{
    return std::to_string(refusal.length) + ", at most " + std::to_string(refusal.limit);
}

std::string TextProblemText(const TextProblem& problem)
{
    switch (problem.fault) {
    case TextFault::Empty:
        return "the text is empty";
    case TextFault::NotUtf8:
        return "the text is not valid UTF-8 at character " + std::to_string(problem.position + 1);
    case TextFault::Character:
        return "the coding has no character \"" + problem.character + "\"";
    case TextFault::TooLong:
        return "the text has " + std::to_string(problem.length) + " characters, at most " +
               std::to_string(problem.limit);
    }
    return "the text cannot be sent";
}

} // namespace

std::optional<Refusal> RefusalOf(SendResult result, std::size_t length, std::size_t limit)
{
    switch (result) {
    case SendResult::Accepted:
        return std::nullopt;
    case SendResult::TooLong:
        return Refusal{.code = RefusalCode::MessageTooLongForLink, .length = length, .limit = limit};
    case SendResult::QueueFull:
        return Refusal{.code = RefusalCode::LinkBusy};
    case SendResult::NotReady:
    case SendResult::Empty:
        break;
    }
    return Refusal{.code = RefusalCode::LinkNotReady};
}

std::string RefusalText(const Refusal& refusal)
{
    switch (refusal.code) {
    case RefusalCode::LinkNotReady:
        return "no link with the radio";
    case RefusalCode::TransactionOpen:
        return "a message or call is in progress";
    case RefusalCode::AddressNotSendable:
        return "not an address that can be called";
    case RefusalCode::StatusOutOfRange:
        return "status " + OutOfLimit(refusal);
    case RefusalCode::Text:
        return TextProblemText(refusal.text);
    case RefusalCode::DataTooLong:
        return "octets of data: " + OutOfLimit(refusal);
    case RefusalCode::DataEmpty:
        return "no data";
    case RefusalCode::DigitsMissing:
        return "no telephone number";
    case RefusalCode::DigitsTooMany:
        return "digits of the telephone number: " + OutOfLimit(refusal);
    case RefusalCode::DigitsInvalid:
        return "a telephone number has digits, * and # only";
    case RefusalCode::GatewayUnknown:
        return "no such gateway";
    case RefusalCode::NoIncomingCall:
        return "no call rings";
    case RefusalCode::NoCall:
        return "not in a call";
    case RefusalCode::UnknownQuestion:
        return "no such radio information";
    case RefusalCode::MessageTooLongForLink:
        return "octets of the message: " + OutOfLimit(refusal);
    case RefusalCode::LinkBusy:
        return "the radio takes no messages at the moment";
    }
    return "refused";
}

void TerminalOutput::Append(TerminalOutput later)
{
    std::move(later.frames.begin(), later.frames.end(), std::back_inserter(frames));
    std::move(later.events.begin(), later.events.end(), std::back_inserter(events));
}

} // namespace map27
