#pragma once

#include <QString>

struct IDbSession;

// What the numbering is made of, fleet plan and site settings, in one text, so that a change of it can be
// told. Raises what reading raises.
QString ReadNumberingTables(IDbSession& session);
