#pragma once

#include <QString>

// What has been entered for an account.
struct UserFields {
    QString userName;
    QString password;
    QString repeatedPassword;
    QString callsign; // trimmed
    QString group;
};

// The first thing that keeps an account from being stored; textId is 0 when there is none.
struct UserProblem {
    enum class Field { UserName, Password, Callsign, Group };

    int textId = 0;
    Field field = Field::UserName;
};

UserProblem ProblemOfNewUser(const UserFields& fields);
UserProblem ProblemOfChangedUser(const UserFields& fields);
