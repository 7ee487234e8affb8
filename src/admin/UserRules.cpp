#include "admin/UserRules.h"

#include "admin/TextIds.h"
#include "core/texts/TextIds.h"
#include "core/texts/Validation.h"

UserProblem ProblemOfNewUser(const UserFields& fields)
{
    if (fields.userName.isEmpty())
        return {AdminText::UserNameMissing, UserProblem::Field::UserName};
    if (fields.password != fields.repeatedPassword)
        return {CoreText::PasswordRepeatDiffers, UserProblem::Field::Password};
    if (fields.password.isEmpty())
        return {CoreText::PasswordMissing, UserProblem::Field::Password};
    if (fields.group.isEmpty())
        return {AdminText::GroupMissing, UserProblem::Field::Group};
    return ProblemOfChangedUser(fields);
}

UserProblem ProblemOfChangedUser(const UserFields& fields)
{
    if (!IsValidCallsign(fields.callsign))
        return {CoreText::CallsignRule, UserProblem::Field::Callsign};
    return {};
}
