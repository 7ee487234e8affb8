#pragma once

namespace dao::sqlite {

class Connection;

// Keeps the session's account, the connection's user, to what it may change in the database: everything for
// members of "Admins"; for everybody else log records, regrouping with the right to, the duty state of a
// directory entry and the logged-on flag of the own profile. A regroup command that was written with the
// right to (regroup_request) may be stored by its owner for an hour, whatever has become of the right. What
// is not permitted raises Kind::NotPermitted, whichever way it was tried. Membership is looked up at each
// change. Accounts have their own checks.
void RestrictToRights(Connection& connection);

} // namespace dao::sqlite
