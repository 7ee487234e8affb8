#include "radio/line/RefusalText.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "radio/base/TextIds.h"

namespace {

struct Sentence {
    int id;
    QStringList values;
};

Sentence TextSentence(const map27::TextProblem& problem)
{
    switch (problem.fault) {
    case map27::TextFault::Empty:
        return {RadioText::TextEmpty, {}};
    case map27::TextFault::TooLong:
        return {RadioText::TextTooLong, {QString::number(problem.length), QString::number(problem.limit)}};
    case map27::TextFault::NotUtf8:
    case map27::TextFault::Character:
        break;
    }
    return {RadioText::TextCharacter, {QString::fromStdString(problem.character)}};
}

Sentence SentenceOf(const map27::Refusal& refusal, const QString& subject)
{
    using map27::RefusalCode;
    switch (refusal.code) {
    case RefusalCode::LinkNotReady:
        return {RadioText::LinkNotReady, {}};
    case RefusalCode::TransactionOpen:
    case RefusalCode::LinkBusy:
        return {RadioText::RadioBusy, {}};
    case RefusalCode::AddressNotSendable:
        return {RadioText::AddressNotSendable, {subject}};
    case RefusalCode::StatusOutOfRange:
        return {RadioText::StatusOutOfRange, {subject}};
    case RefusalCode::Text:
        return TextSentence(refusal.text);
    case RefusalCode::DataEmpty:
        return {RadioText::TextEmpty, {}};
    case RefusalCode::DataTooLong:
    case RefusalCode::MessageTooLongForLink:
        return {RadioText::TextTooLong, {QString::number(refusal.length), QString::number(refusal.limit)}};
    case RefusalCode::DigitsMissing:
    case RefusalCode::DigitsTooMany:
    case RefusalCode::DigitsInvalid:
    case RefusalCode::GatewayUnknown:
        return {RadioText::PhoneDigits, {subject}};
    case RefusalCode::NoIncomingCall:
    case RefusalCode::NoCall:
        return {RadioText::NoCall, {}};
    case RefusalCode::UnknownQuestion:
        break;
    }
    return {RadioText::LinkNotReady, {}};
}

} // namespace

Error RefusalError(const map27::Refusal& refusal, const QString& subject, const IStringSource& strings)
{
    const Sentence sentence = SentenceOf(refusal, subject);
    return Error(ErrorCode::First + static_cast<quint32>(sentence.id),
                 FormatMessage(strings, sentence.id, sentence.values));
}
