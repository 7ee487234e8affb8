#include "core/logon/frmFirstRun.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/widgets/Captions.h"
#include "core/widgets/FilePicker.h"
#include "core/widgets/FormLayout.h"
#include "dao/base/FileAccess.h"
#include "ui_frmFirstRun.h"

namespace {

constexpr int FieldWidth = 52;  // characters; a typical path
constexpr int MessageLines = 2; // kept free for the message

} // namespace

frmFirstRun::frmFirstRun(const IStringSource& strings, const QString& missing, const dao::Location& proposed,
                         Action action, QWidget* parent)
    : QDialog(parent),
      m_strings(strings),
      m_proposed(proposed),
      m_action(std::move(action)),
      m_ui(std::make_unique<Ui::frmFirstRun>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, strings);
    m_ui->lblIntro->setText(missing.isEmpty() ? strings.LoadString(CoreText::DatabaseNotChosen)
                                              : FormatMessage(strings, CoreText::DatabaseMissing, {missing}));
    m_ui->txtDbFile->setMinimumWidth(FieldWidth * fontMetrics().averageCharWidth());
    m_ui->lblMessage->setMinimumHeight(MessageLines * fontMetrics().lineSpacing());

    m_ui->cmbGroup->addItems(dao::SystemGroups());

    MakeNarrow(*m_ui->cmdSelDbFile);
    MakeNarrow(*m_ui->cmdSelSysFile);

    connect(m_ui->optCreate, &QRadioButton::toggled, this, &frmFirstRun::SetMode);
    connect(m_ui->txtDbFile, &QLineEdit::textChanged, this, &frmFirstRun::FollowDatabase);
    connect(m_ui->txtSysFile, &QLineEdit::textEdited, this, [this] { m_workgroupTyped = true; });
    connect(m_ui->cmdSelDbFile, &QPushButton::clicked, this, &frmFirstRun::SelectDatabase);
    connect(m_ui->cmdSelSysFile, &QPushButton::clicked, this, &frmFirstRun::SelectWorkgroup);
    connect(m_ui->chkShared, &QCheckBox::toggled, this, &frmFirstRun::EnableSharing);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmFirstRun::Confirm);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    SetMode();
    GrowToContents(*this);
}

frmFirstRun::~frmFirstRun() = default;

FirstRunChoice frmFirstRun::Choice() const
{
    FirstRunChoice choice;
    choice.create = m_ui->optCreate->isChecked();
    choice.location = {FullPath(m_ui->txtDbFile->text()), FullPath(m_ui->txtSysFile->text())};
    choice.userName = m_ui->txtUserName->text().trimmed();
    choice.password = m_ui->txtPassword->text();
    choice.repeated = m_ui->txtRepeat->text();
    if (m_ui->cmbGroup->isEnabled())
        choice.group = m_ui->cmbGroup->currentText();
    return choice;
}

// A new database has a suggested place and an administrator; an existing one has to be found.
void frmFirstRun::SetMode()
{
    const bool create = m_ui->optCreate->isChecked();
    m_workgroupTyped = false;
    m_ui->txtDbFile->setText(create ? m_proposed.database : QString());
    m_ui->txtSysFile->setText(create ? m_proposed.workgroup : QString());
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_ui->lblUserName, m_ui->txtUserName, m_ui->lblPassword,
                                         m_ui->txtPassword, m_ui->lblRepeat, m_ui->txtRepeat, m_ui->lblHint})
        widget->setEnabled(create);
    EnableSharing();
    m_ui->lblMessage->clear();
    m_ui->cmdOK->setText(m_strings.LoadString(create ? CoreText::CreateAndLogOn : CoreText::OpenExisting));
    if (create)
        m_ui->txtUserName->setFocus();
    else
        m_ui->txtDbFile->setFocus();
}

// Files of a new database can be shared with others; a server has accounts of its own.
void frmFirstRun::EnableSharing()
{
    const bool possible =
        m_ui->optCreate->isChecked() && !dao::IsServerTarget(m_ui->txtDbFile->text().trimmed());
    m_ui->chkShared->setEnabled(possible);
    m_ui->cmbGroup->setEnabled(possible && m_ui->chkShared->isChecked());
}

void frmFirstRun::SelectDatabase()
{
    const bool create = m_ui->optCreate->isChecked();
    const QString start = m_ui->txtDbFile->text().isEmpty() ? m_proposed.database : m_ui->txtDbFile->text();
    const QString file =
        FilePicker{FilePicker::Kind::Database, create, FullPath(start)}.Pick(m_strings, this);
    if (!file.isEmpty())
        m_ui->txtDbFile->setText(file);
}

void frmFirstRun::SelectWorkgroup()
{
    const bool create = m_ui->optCreate->isChecked();
    const QString start =
        m_ui->txtSysFile->text().isEmpty() ? m_proposed.workgroup : m_ui->txtSysFile->text();
    const QString file =
        FilePicker{FilePicker::Kind::Workgroup, create, FullPath(start)}.Pick(m_strings, this);
    if (file.isEmpty())
        return;
    m_workgroupTyped = true;
    m_ui->txtSysFile->setText(file);
}

void frmFirstRun::FollowDatabase()
{
    if (!m_workgroupTyped)
        m_ui->txtSysFile->setText(dao::WorkgroupFileFor(m_ui->txtDbFile->text().trimmed()));
    EnableSharing();
}

void frmFirstRun::Confirm()
{
    const FirstRunChoice choice = Choice();
    if (const auto problem = CheckFirstRun(choice)) {
        ShowProblem(*problem);
        return;
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const QString refusal = m_action(choice);
    QGuiApplication::restoreOverrideCursor();
    if (refusal.isEmpty())
        accept();
    else
        ShowMessageLine(*this, *m_ui->lblMessage, refusal);
}

void frmFirstRun::ShowProblem(const FirstRunProblem& problem)
{
    using Field = FirstRunProblem::Field;
    ShowMessageLine(*this, *m_ui->lblMessage, m_strings.LoadString(problem.textId));
    QLineEdit* field = m_ui->txtDbFile;
    switch (problem.field) {
    case Field::Database:
        break;
    case Field::Workgroup:
        field = m_ui->txtSysFile;
        break;
    case Field::UserName:
        field = m_ui->txtUserName;
        break;
    case Field::Password:
        field = m_ui->txtPassword;
        m_ui->txtPassword->clear();
        m_ui->txtRepeat->clear();
        break;
    }
    field->setFocus();
}
