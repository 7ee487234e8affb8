#pragma once

#include <QtGlobal>

struct IDbSession;

// Whether a directory entry takes part in dynamic regrouping, as a group or as a member. Raises Error and
// dao::Error.
bool IsInDynamicRegroup(IDbSession& session, qint32 addressId);
