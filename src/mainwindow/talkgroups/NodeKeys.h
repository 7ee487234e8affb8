#pragma once

#include <QString>

// Keys of tree nodes and list items: "ARS" an individual, "DGS" a dynamic group, "RRS" a radio in a dynamic
// group, followed by ids and position in upper-case hexadecimal without leading zeros. The settings keep one
// of them, so they must read the same for ever. Texts that are not such a key decode to 0.

QString MakeIndividualKey(qint32 addressId);
QString MakeGroupKey(qint32 groupId, quint8 pos);
QString MakeMemberKey(qint32 groupId, qint32 memberId, quint8 pos);

qint32 IndividualIdOf(const QString& individualKey);

struct GroupKeyParts {
    qint32 groupId = 0;
    quint8 pos = 0;
};
GroupKeyParts PartsOfGroupKey(const QString& groupKey);

struct MemberKeyParts {
    qint32 groupId = 0;
    qint32 memberId = 0;
    quint8 pos = 0;
};
MemberKeyParts PartsOfMemberKey(const QString& memberKey);
