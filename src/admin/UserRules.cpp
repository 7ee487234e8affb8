#include "admin/UserRules.h"

#include "admin/TextIds.h"
#include "core/texts/Validation.h"

UserProblem ProblemOfNewUser(const UserFields& fields)
{
    if (fields.userName.isEmpty())
        return {AdminText::UserNameMissing, UserProblem::Field::UserName};
    if (fields.password != fields.repeatedPassword)
        return {AdminText::PasswordsDiffer, UserProblem::Field::Password};
    if (fields.password.isEmpty())
        return {AdminText::PasswordMissing, UserProblem::Field::Password};
    if (fields.group.isEmpty())
        return {AdminText::GroupMissing, UserProblem::Field::Group};
    return ProblemOfChangedUser(fields);
}

UserProblem ProblemOfChangedUser(const UserFields& fields)
{
    if (!IsValidCallsign(fields.callsign))
        return {AdminText::CallsignRule, UserProblem::Field::Callsign};
    return {};
}
