#include "admin/frmUserManager.h"

#include "admin/TextIds.h"
#include "admin/UserModel.h"
#include "core/desktop/Prompt.h"
#include "core/session/AccountChanges.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/texts/Validation.h"
#include "core/widgets/Captions.h"
#include "core/widgets/ListHelpers.h"
#include "dao/Workspace.h"
#include "ui_frmUserManager.h"

#include <QHeaderView>
#include <QStyle>

namespace {

constexpr auto ByUser = "find_users_ob_user";
constexpr auto ByCallsign = "find_users_ob_callsign";
constexpr int ListLines = 12;

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

UserProblem ProblemOfChangedUser(const UserFields& fields)
{
    if (!IsValidCallsign(fields.callsign))
        return {CoreText::CallsignRule, UserProblem::Field::Callsign};
    return {};
}

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

} // namespace

frmUserManager::frmUserManager(const AdminServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmUserManager>()),
      m_users(new UserModel(services.strings, this)),
      m_query(QLatin1String(ByUser))
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    m_ui->lvUsers->setModel(m_users);
    m_ui->lvUsers->header()->setSectionsClickable(true);
    m_ui->lvUsers->setMinimumHeight(ListLines * fontMetrics().lineSpacing());
    SetFullRowSelect(*m_ui->lvUsers, true);
    ConnectControls();
    List();
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    m_ui->lvUsers->setMinimumWidth(m_ui->lvUsers->header()->length() + 2 * scrollBar);
}

frmUserManager::~frmUserManager() = default;

void frmUserManager::ConnectControls()
{
    connect(m_ui->cmdFind, &QPushButton::clicked, this, &frmUserManager::List);
    connect(&m_services.session.Changes(), &DatabaseChanges::Changed, this, [this](const QString& table) {
        if (table.isEmpty() || table == QLatin1String("user_profile") || table == QLatin1String("membership"))
            ListAgain();
    });
    connect(m_ui->lvUsers->header(), &QHeaderView::sectionClicked, this, &frmUserManager::SortBy);
    connect(m_ui->lvUsers->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmUserManager::EnableButtons);
    connect(m_users, &QAbstractItemModel::modelReset, this, &frmUserManager::EnableButtons);
    connect(m_ui->cmdNew, &QPushButton::clicked, this, &frmUserManager::New);
    connect(m_ui->cmdModify, &QPushButton::clicked, this, &frmUserManager::Modify);
    connect(m_ui->cmdDel, &QPushButton::clicked, this, &frmUserManager::Delete);
    connect(m_ui->cmdUnlog, &QPushButton::clicked, this, &frmUserManager::Unlog);
    connect(m_ui->cmdAddUser, &QPushButton::clicked, this, &frmUserManager::AddUser);
    connect(m_ui->cmdApply, &QPushButton::clicked, this, &frmUserManager::Apply);
    connect(m_ui->cmdResetPassword, &QPushButton::clicked, this, &frmUserManager::ResetPassword);
    connect(m_ui->cmdClearUserFields, &QPushButton::clicked, this, &frmUserManager::ClearFields);
    connect(m_ui->cmdCancelUser, &QPushButton::clicked, this, &frmUserManager::ShowList);
}

void frmUserManager::ListAgain()
{
    if (m_ui->stkPanes->currentWidget() != m_ui->picUserList)
        return; // what is being entered stays as it is
    const QVariant key = GetSelectedItem(*m_ui->lvUsers).data(UserModel::KeyRole);
    const QString said = m_ui->sbStatus->text();
    const bool wasCount = said == Found();
    List();
    if (!wasCount)
        m_ui->sbStatus->setText(said); // what was done stays told: nobody asked for this list
    const int row = RowOf(key);
    if (row >= 0)
        m_ui->lvUsers->setCurrentIndex(m_users->index(row, 0));
}

int frmUserManager::RowOf(const QVariant& key) const
{
    if (!key.isValid())
        return -1;
    return m_users->match(m_users->index(0, 0), UserModel::KeyRole, key, 1, Qt::MatchExactly).value(0).row();
}

void frmUserManager::List()
{
    Try([this] {
        m_users->Replace(ReadUsers(m_services.session, m_query, m_ui->txtLookFor->text()));
        AutosizeColumns(*m_ui->lvUsers, true);
        m_ui->sbStatus->setText(Found());
    });
}

QString frmUserManager::Found() const
{
    return FormatMessage(m_services.strings, AdminText::UsersFound, {QString::number(m_users->rowCount())});
}

void frmUserManager::SortBy(int column)
{
    if (column == UserModel::UserName)
        m_query = QLatin1String(ByUser);
    else if (column == UserModel::Callsign)
        m_query = QLatin1String(ByCallsign);
    else
        return;
    List();
}

void frmUserManager::EnableButtons()
{
    const bool selected = HasSelectedItem(*m_ui->lvUsers);
    for (QPushButton* button : {m_ui->cmdModify, m_ui->cmdDel, m_ui->cmdUnlog})
        button->setEnabled(selected);
}

const UserRow* frmUserManager::Selected() const
{
    const QModelIndex item = GetSelectedItem(*m_ui->lvUsers);
    return item.isValid() ? &m_users->Row(item.row()) : nullptr;
}

// Whether it is the account that is logged on here.
bool frmUserManager::IsOwn(const UserRow& user) const
{
    return user.userName.compare(m_services.session.Workspace().UserName(), Qt::CaseInsensitive) == 0;
}

void frmUserManager::New()
{
    if (!Try([this] { FillGroups(); }))
        return;
    ClearFields();
    m_ui->chkAllowDR->setChecked(false);
    ShowDetails(Mode::Adding);
    m_ui->txtUserName->setFocus();
}

void frmUserManager::Modify()
{
    const UserRow* user = Selected();
    if (!user || !Try([this] { FillGroups(); }))
        return;
    m_ui->txtUserName->setText(user->userName);
    m_ui->txtCallsign->setText(user->callsign);
    m_ui->cmbGroup->setCurrentIndex(m_ui->cmbGroup->findText(user->group, Qt::MatchFixedString));
    m_ui->chkAllowDR->setChecked(user->allowRegrouping);
    ShowDetails(Mode::Changing);
    m_ui->txtCallsign->setFocus();
}

void frmUserManager::AddUser()
{
    if (!FieldsAreValid(Mode::Adding))
        return;
    NewAccount account;
    account.userName = m_ui->txtUserName->text();
    account.password = m_ui->txtPass_0->text();
    account.callsign = m_ui->txtCallsign->text().trimmed();
    account.group = m_ui->cmbGroup->currentText();
    account.allowRegrouping = m_ui->chkAllowDR->isChecked();
    const bool added = Try([&] {
        constexpr int longestPid = 20;
        account.pid = m_services.session.MakePID(account.userName, QString()).left(longestPid);
        AddAccount(m_services.session.Workspace(), account);
    });
    if (!added)
        return;
    List();
    Say(AdminText::UserAdded);
    ClearFields();
    ShowList();
}

void frmUserManager::Apply()
{
    const UserRow* user = Selected();
    if (!user || !FieldsAreValid(Mode::Changing))
        return;
    AccountChange change;
    change.profileId = user->profileId;
    change.userName = user->userName;
    change.callsign = m_ui->txtCallsign->text().trimmed();
    change.oldGroup = user->group;
    change.newGroup = m_ui->cmbGroup->currentText();
    change.allowRegrouping = m_ui->chkAllowDR->isChecked();
    if (!Try([&] { ChangeAccount(m_services.session.Workspace(), change); }))
        return;
    List();
    Say(AdminText::UserUpdated);
    ShowList();
}

void frmUserManager::Delete()
{
    const UserRow* user = Selected();
    if (!user)
        return;
    // The list may be read again while the question is open.
    const UserRow chosen = *user;
    const QVariant key = GetSelectedItem(*m_ui->lvUsers).data(UserModel::KeyRole);
    if (IsOwn(chosen)) {
        m_services.prompt.ShowWarning(Text(AdminText::OwnAccount));
        return;
    }
    if (!m_services.prompt.AskConfirmation(Text(AdminText::DeleteUserQuestion)))
        return;
    if (!Try([&] { DeleteAccount(m_services.session.Workspace(), chosen.profileId, chosen.userName); }))
        return;
    const int row = RowOf(key);
    if (row >= 0)
        m_users->Remove(row);
    SelectNothing(*m_ui->lvUsers); // the view would select the neighbour, and the next Delete would hit it
    Say(AdminText::UserDeleted);
}

void frmUserManager::ResetPassword()
{
    const UserRow* user = Selected();
    if (!user)
        return;
    if (IsOwn(*user)) {
        m_services.prompt.ShowWarning(Text(AdminText::OwnPassword));
        return;
    }
    if (!m_services.prompt.AskConfirmation(Text(AdminText::ResetPasswordQuestion)))
        return;
    if (!Try([&] {
            m_services.session.Workspace().Users().Item(user->userName)->NewPassword(QString(), QString());
        }))
        return;
    m_services.prompt.ShowInfo(Text(AdminText::PasswordReset));
    Say(AdminText::PasswordReset);
}

void frmUserManager::Unlog()
{
    const UserRow* user = Selected();
    if (!user || !user->loggedOn)
        return;
    const qlonglong profileId = user->profileId; // the list may be read again while the question is open
    const QVariant key = GetSelectedItem(*m_ui->lvUsers).data(UserModel::KeyRole);
    if (!m_services.prompt.AskConfirmation(Text(AdminText::UnlogQuestion)))
        return;
    const bool unlogged = Try([&] {
        const auto query = m_services.session.Database().QueryDef(QStringLiteral("unlog_user"));
        query->SetParameter(QStringLiteral("id"), profileId);
        if (query->Execute() == 0)
            throw dao::Error(dao::Kind::RecordGone);
    });
    if (!unlogged)
        return;
    const int row = RowOf(key);
    if (row >= 0)
        m_users->SetLoggedOff(row);
    Say(AdminText::UserUnlogged);
}

void frmUserManager::ClearFields()
{
    for (QLineEdit* field : {m_ui->txtUserName, m_ui->txtCallsign, m_ui->txtPass_0, m_ui->txtPass_1})
        field->clear();
    m_ui->cmbGroup->setCurrentIndex(-1);
}

void frmUserManager::ShowDetails(Mode mode)
{
    const bool adding = mode == Mode::Adding;
    for (QWidget* widget :
         {static_cast<QWidget*>(m_ui->cmdAddUser), static_cast<QWidget*>(m_ui->cmdClearUserFields),
          static_cast<QWidget*>(m_ui->txtPass_0), static_cast<QWidget*>(m_ui->txtPass_1),
          static_cast<QWidget*>(m_ui->lblPass), static_cast<QWidget*>(m_ui->lblPass2)})
        widget->setVisible(adding);
    for (QWidget* widget : {m_ui->cmdApply, m_ui->cmdResetPassword})
        widget->setVisible(!adding);
    m_ui->txtUserName->setReadOnly(!adding);
    m_ui->stkPanes->setCurrentWidget(m_ui->picUserDetails);
    (adding ? m_ui->cmdAddUser : m_ui->cmdApply)->setDefault(true);
}

void frmUserManager::ShowList()
{
    m_ui->stkPanes->setCurrentWidget(m_ui->picUserList);
    m_ui->cmdFind->setDefault(true);
    m_ui->lvUsers->setFocus();
}

void frmUserManager::FillGroups()
{
    dao::GroupList& groups = m_services.session.Workspace().Groups();
    groups.Refresh();
    m_ui->cmbGroup->clear();
    for (const QString& group : groups.Names())
        if (group != Text(AdminText::UsersGroup))
            m_ui->cmbGroup->addItem(group);
    m_ui->cmbGroup->setCurrentIndex(-1);
}

bool frmUserManager::FieldsAreValid(Mode mode)
{
    const UserFields fields{m_ui->txtUserName->text(), m_ui->txtPass_0->text(), m_ui->txtPass_1->text(),
                            m_ui->txtCallsign->text().trimmed(), m_ui->cmbGroup->currentText()};
    const UserProblem problem =
        mode == Mode::Adding ? ProblemOfNewUser(fields) : ProblemOfChangedUser(fields);
    if (problem.textId == 0)
        return true;
    m_services.prompt.ShowWarning(Text(problem.textId));
    switch (problem.field) {
    case UserProblem::Field::UserName:
        m_ui->txtUserName->setFocus();
        break;
    case UserProblem::Field::Password:
        m_ui->txtPass_0->clear();
        m_ui->txtPass_1->clear();
        m_ui->txtPass_0->setFocus();
        break;
    case UserProblem::Field::Callsign:
        m_ui->txtCallsign->setFocus();
        break;
    case UserProblem::Field::Group:
        m_ui->cmbGroup->setFocus();
        break;
    }
    return false;
}

bool frmUserManager::Try(const std::function<void()>& change)
{
    try {
        change();
        return true;
    } catch (const std::exception& failure) {
        m_services.prompt.ShowError(DescribeError(failure, m_services.strings));
        return false;
    }
}

void frmUserManager::Say(int textId)
{
    m_ui->sbStatus->setText(Text(textId));
}

QString frmUserManager::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
