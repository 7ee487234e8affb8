#pragma once

#include "admin/AdminServices.h"

#include <QDialog>
#include <functional>
#include <memory>

class UserModel;
struct UserRow;
namespace Ui {
class frmUserManager;
}

// Lists the operators' accounts and adds, changes and deletes them. Created for each use.
class frmUserManager : public QDialog {
    Q_OBJECT

public:
    explicit frmUserManager(const AdminServices& services, QWidget* parent = nullptr);
    ~frmUserManager() override;

private:
    enum class Mode { Adding, Changing };

    void ConnectControls();
    void List();
    QString Found() const;
    // Another console changed accounts; the selected one stays selected.
    void ListAgain();
    // By UserModel::KeyRole; -1: not listed.
    int RowOf(const QVariant& key) const;
    void SortBy(int column);
    void EnableButtons();
    const UserRow* Selected() const;
    bool IsOwn(const UserRow& user) const;

    void New();
    void Modify();
    void AddUser();
    void Apply();
    void Delete();
    void ResetPassword();
    void Unlog();
    void ClearFields();

    void ShowDetails(Mode mode);
    void ShowList();
    void FillGroups();
    // False, after saying why, when the fields cannot be stored.
    bool FieldsAreValid(Mode mode);
    // False, after saying why, when it failed.
    bool Try(const std::function<void()>& change);
    void Say(int textId);
    QString Text(int id) const;

    AdminServices m_services;
    std::unique_ptr<Ui::frmUserManager> m_ui;
    UserModel* m_users;
    QString m_query; // the current sort
};
