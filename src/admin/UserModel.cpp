#include "admin/UserModel.h"

#include "admin/TextIds.h"
#include "core/session/AccountChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/StringSource.h"
#include "dao/Workspace.h"
#include "dao/base/TextMatch.h"
#include "dao/tables/UserProfileTable.h"

std::vector<UserRow> ReadUsers(IDbSession& session, const QString& query, const QString& lookFor)
{
    std::vector<UserRow> users;
    const auto definition = session.Database().QueryDef(query);
    definition->SetParameter(QStringLiteral("lookfor"), lookFor);
    const auto rows = definition->OpenSnapshot();
    const auto memberships = session.Workspace().Users().Memberships();
    for (; !rows->Eof(); rows->MoveNext()) {
        UserRow user;
        const dao::UserProfileRecord profile = dao::UserProfileTable::Read(*rows);
        user.profileId = profile.id;
        user.userName = profile.userName;
        user.callsign = profile.callsign;
        user.loggedOn = profile.loggedOn;
        user.allowRegrouping = profile.allowRegrouping;
        // A profile may be left over from an account that another tool deleted.
        user.group = ShownGroup(memberships.value(dao::Fold(user.userName)));
        users.push_back(user);
    }
    return users;
}

UserModel::UserModel(const IStringSource& strings, QObject* parent)
    : QAbstractTableModel(parent),
      m_strings(strings)
{
}

void UserModel::Replace(std::vector<UserRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void UserModel::Remove(int row)
{
    beginRemoveRows({}, row, row);
    m_rows.erase(m_rows.begin() + row);
    endRemoveRows();
}

void UserModel::SetLoggedOff(int row)
{
    m_rows[static_cast<std::size_t>(row)].loggedOn = false;
    Q_EMIT dataChanged(index(row, LoggedOn), index(row, LoggedOn));
}

int UserModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int UserModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant UserModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const UserRow& user = Row(index.row());
    if (role == KeyRole)
        return QStringLiteral("key") + QString::number(user.profileId, 16).toUpper();
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case UserName:
        return user.userName;
    case Callsign:
        return user.callsign;
    case LoggedOn:
        return YesOrNo(user.loggedOn);
    case MemberOf:
        return user.group;
    case Regrouping:
        return YesOrNo(user.allowRegrouping);
    default:
        return {};
    }
}

QVariant UserModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    constexpr int Captions[ColumnCount] = {AdminText::UserNameColumn, AdminText::UserCallsignColumn,
                                           AdminText::LoggedOnColumn, AdminText::MemberOfColumn,
                                           AdminText::RegroupingColumn};
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return m_strings.LoadString(Captions[section]);
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

QString UserModel::YesOrNo(bool yes) const
{
    return m_strings.LoadString(yes ? AdminText::Yes : AdminText::No);
}
