#pragma once

#include <QString>
#include <QStringList>

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
    QString group; // other than "Users"; empty: none
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

// Leaves user name and password alone. Kind::RecordGone when the profile no longer exists.
void ChangeAccount(dao::Workspace& workspace, const AccountChange& change);

// Kind::RecordGone when the profile no longer exists.
void DeleteAccount(dao::Workspace& workspace, qlonglong profileId, const QString& userName);

// The group that a list shows for an account that is in these: the last one other than "Users"; empty when
// there is none.
QString ShownGroup(const QStringList& groups);
