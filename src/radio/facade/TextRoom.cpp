#include "radio/facade/TextRoom.h"

#include "map27/codec/CharacterCoding.h"

TextRoom RoomOf(const QString& sent, bool eightBit)
{
    using map27::TextCoding;

    const auto coding = eightBit ? map27::Coding::PcCharacters : map27::Coding::Ccitt5;
    const auto most = static_cast<int>(*map27::MostUnits(coding, map27::DataSize::Medium));
    TextRoom room;
    room.left = most - static_cast<int>(sent.toUcs4().size());
    const auto encoded =
        map27::EncodeText(sent.toStdString(), eightBit ? TextCoding::EightBit : TextCoding::SevenBit);
    if (const auto* problem = std::get_if<map27::TextProblem>(&encoded))
        room.unsendable = QString::fromStdString(problem->character);
    return room;
}
