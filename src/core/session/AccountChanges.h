#pragma once

#include <QString>

namespace dao {
class Workspace;
}

// An account is two things kept together: the workgroup's user and the row in user_profile. These change both
// in one transaction, so that either both change or neither. They raise dao::Error with nothing changed.
struct NewAccount {
    QString userName;
    QString pid;
    QString password;
    QString callsign;
    QString group; // besides "Users"; empty: none
    bool allowRegrouping = false;
};

struct AccountChange {
    qlonglong profileId = 0;
    QString userName;
    QString callsign;
    QString oldGroup; // as it was shown; empty: "Users" only
    QString newGroup; // empty: the groups stay
    bool allowRegrouping = false;
};

void AddAccount(dao::Workspace& workspace, const NewAccount& account);

// Leaves user name and password. Kind::RecordGone when there is no such profile any more.
void ChangeAccount(dao::Workspace& workspace, const AccountChange& change);

// Kind::RecordGone when there is no such profile any more.
void DeleteAccount(dao::Workspace& workspace, qlonglong profileId, const QString& userName);

// The group of an account that a list shows: the last one besides "Users"; empty when there is none.
QString ShownGroup(dao::Workspace& workspace, const QString& userName);
