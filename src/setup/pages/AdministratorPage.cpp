#include "setup/pages/AdministratorPage.h"

#include "setup/base/SetUpRules.h"
#include "setup/base/TextIds.h"

#include <QLabel>
#include <QLineEdit>

AdministratorPage::AdministratorPage(const SetUpServices& services)
    : SetUpPage(services, "pageAdministrator", SetUpText::AdministratorTitle, SetUpText::AdministratorAbout),
      m_user(AddField(SetUpText::UserName, "txtUser")),
      m_password(AddField(SetUpText::Password, "txtPassword")),
      m_repeat(AddField(SetUpText::Repeat, "txtRepeat")),
      m_note(AddText("lblNote"))
{
    for (QLineEdit* field : {m_password, m_repeat})
        field->setEchoMode(QLineEdit::Password);
}

QLineEdit* AdministratorPage::AddField(int label, const char* name)
{
    auto* field = new QLineEdit(this);
    AddRow(label, field, name);
    return field;
}

void AdministratorPage::Enter(const SetUpChoice& choice)
{
    SetUpPage::Enter(choice);
    m_isNew = choice.database == SetUpChoice::Database::New;
    for (QLineEdit* field : {m_user, m_password, m_repeat})
        field->setEnabled(m_isNew);
    m_note->setText(m_isNew ? QString() : Text(SetUpText::AccountsThere));
}

QString AdministratorPage::Take(SetUpChoice& choice)
{
    if (!m_isNew)
        return {};
    const QString user = m_user->text().trimmed();
    QString problem =
        SetUpRules::ProblemOfAccount(user, m_password->text(), m_repeat->text(), m_services.strings);
    if (!problem.isEmpty())
        return problem;
    choice.administrator = user;
    choice.password = m_password->text();
    return {};
}

void AdministratorPage::Skip(SetUpChoice& choice)
{
    choice.administrator.clear();
    choice.password.clear();
}
