#include "mainwindow/talkgroups/NodeKeys.h"

namespace {

constexpr qsizetype PrefixLength = 3;
constexpr QLatin1Char Separator('_');

// A negative id is its two's complement.
unsigned Bits(qint32 id)
{
    return static_cast<unsigned>(id);
}

qint32 Id(QStringView digits)
{
    return static_cast<qint32>(digits.toUInt(nullptr, 16));
}

quint8 Position(QStringView digits)
{
    const uint value = digits.toUInt(nullptr, 16);
    return value <= 0xFF ? static_cast<quint8>(value) : 0;
}

// What stands between two places, excluding both; empty when the second is not after the first.
QStringView Between(const QString& text, qsizetype first, qsizetype second)
{
    return second > first + 1 ? QStringView(text).mid(first + 1, second - first - 1) : QStringView();
}

} // namespace

QString MakeIndividualKey(qint32 addressId)
{
    return QString::asprintf("ARS%X", Bits(addressId));
}

QString MakeGroupKey(qint32 groupId, quint8 pos)
{
    return QString::asprintf("DGS%X_%X", Bits(groupId), unsigned{pos});
}

QString MakeMemberKey(qint32 groupId, qint32 memberId, quint8 pos)
{
    return QString::asprintf("RRS%X_%X_%X", Bits(groupId), Bits(memberId), unsigned{pos});
}

qint32 IndividualIdOf(const QString& individualKey)
{
    return Id(QStringView(individualKey).mid(PrefixLength));
}

GroupKeyParts PartsOfGroupKey(const QString& groupKey)
{
    const qsizetype first = groupKey.indexOf(Separator);
    if (first < 0)
        return {};
    return {Id(Between(groupKey, PrefixLength - 1, first)), Position(QStringView(groupKey).mid(first + 1))};
}

MemberKeyParts PartsOfMemberKey(const QString& memberKey)
{
    const qsizetype first = memberKey.indexOf(Separator);
    if (first < 0)
        return {};
    MemberKeyParts parts{.groupId = Id(Between(memberKey, PrefixLength - 1, first))};
    const qsizetype second = memberKey.indexOf(Separator, first + 1);
    if (second >= 0) {
        parts.memberId = Id(Between(memberKey, first, second));
        parts.pos = Position(QStringView(memberKey).mid(second + 1));
    }
    return parts;
}
