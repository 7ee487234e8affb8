#pragma once

#include <QAbstractTableModel>
#include <vector>

struct IDbSession;
struct IStringSource;

// One account as the user manager lists it.
struct UserRow {
    qlonglong profileId = 0;
    QString userName;
    QString callsign;
    QString group; // other than "Users"; empty: none
    bool loggedOn = false;
    bool allowRegrouping = false;
};

// Runs a stored query of accounts ("find_users_ob_user", "find_users_ob_callsign"). Raises Error and
// dao::Error.
std::vector<UserRow> ReadUsers(IDbSession& session, const QString& query, const QString& lookFor);

// The accounts, one a row.
class UserModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { UserName, Callsign, LoggedOn, MemberOf, Regrouping, ColumnCount };
    // "key" and the hexadecimal profile id.
    static constexpr int KeyRole = Qt::UserRole;

    UserModel(const IStringSource& strings, QObject* parent);

    void Replace(std::vector<UserRow> rows);
    const UserRow& Row(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    void Remove(int row);
    void SetLoggedOff(int row);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString YesOrNo(bool yes) const;

    const IStringSource& m_strings;
    std::vector<UserRow> m_rows;
};
