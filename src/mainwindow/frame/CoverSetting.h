#pragma once

struct IDbSession;

// Site setting: whether log and lists are covered from a logoff to the next logon. Off where nobody has set
// it.
bool CoversAfterLogoff(IDbSession& session, bool fallback = false);
// Raises Error or dao::Error when it is not stored.
void SetCoversAfterLogoff(IDbSession& session, bool on);
