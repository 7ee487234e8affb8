#pragma once

// Whether an operator is logged on and may administer. Owned by the main window, changed by logon and logoff
// only.
struct SessionState {
    bool LoggedOn = false;
    bool Administrator = false; // member of the group "Admins"; false while nobody is logged on

    // Whether the operator may regroup, given the right of the profile.
    bool MayRegroup(bool allowDynamicRegrouping) const
    {
        return LoggedOn && (Administrator || allowDynamicRegrouping);
    }
};
