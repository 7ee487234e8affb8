#include "setup/pages/DatabasePage.h"

#include "core/base/AppPaths.h"
#include "core/logon/FirstRunChoice.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/FilePicker.h"
#include "dao/Workspace.h"
#include "setup/base/TextIds.h"

#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

constexpr int Limit = 10000; // ms

// Where the console looks for its database now, if that is a file.
QString StoredFile(const IDbLogon& logon)
{
    try {
        const QString file = logon.DatabaseFile();
        if (!dao::IsServerTarget(file))
            return file;
    } catch (const std::exception&) { // none is chosen
    }
    return AppPaths::DataFolder() + u'/' + AppPaths::Title + ".kyndb";
}

// What is said of a server; runs beside the windows.
QString Try(const QString& target, const IStringSource& strings)
{
    try {
        dao::OpenWorkspace({target, {}}, QStringLiteral("connection test"), QStringLiteral("none"));
    } catch (const dao::Error& error) {
        if (error.kind != dao::Kind::WrongPassword)
            return DescribeError(error, strings);
    } catch (const std::exception& failure) {
        return DescribeError(failure, strings);
    }
    return strings.LoadString(SetUpText::ServerAnswers);
}

} // namespace

DatabasePage::DatabasePage(const SetUpServices& services)
    : SetUpPage(services, "pageDatabase", SetUpText::DatabaseTitle, SetUpText::DatabaseAbout),
      m_new(AddButton<QRadioButton>(SetUpText::NewDatabase, "optNew")),
      m_existing(AddButton<QRadioButton>(SetUpText::ExistingDatabase, "optExisting")),
      m_onServer(AddButton<QRadioButton>(SetUpText::ServerDatabase, "optServer")),
      m_file(new QLineEdit(this)),
      m_lane(Lane::Kind::OwnThread)
{
    m_file->setText(StoredFile(services.logon));
    AddRow(SetUpText::DatabaseFile, m_file, "txtFile");
    m_choose = AddButton<QPushButton>(SetUpText::Choose, "cmdChoose");
    AddServer();
    m_new->setChecked(true);
    m_limit.setSingleShot(true);
    m_limit.setInterval(Limit);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        EndTest(FormatMessage(m_services.strings, SetUpText::ServerSilent, {QString::number(Limit / 1000)}));
    });
    for (QRadioButton* option : {m_new, m_existing, m_onServer})
        connect(option, &QRadioButton::toggled, this, &DatabasePage::SetMode);
    connect(m_choose, &QPushButton::clicked, this, &DatabasePage::ChooseFile);
    SetMode();
}

void DatabasePage::AddServer()
{
    m_server = new QGroupBox(Text(SetUpText::ServerDatabase).remove(u'&'), this);
    auto* form = new QFormLayout(m_server);
    const auto field = [&](int label, const char* name) {
        auto* edit = new QLineEdit(m_server);
        edit->setObjectName(QLatin1String(name));
        form->addRow(Text(label), edit);
        return edit;
    };
    m_host = field(SetUpText::Server, "txtServer");
    m_name = field(SetUpText::ServerName, "txtServerName");
    m_certificate = field(SetUpText::Certificate, "txtCertificate");
    auto* about = new QLabel(Text(SetUpText::CertificateAbout), m_server);
    about->setWordWrap(true);
    auto* choose = new QPushButton(Text(SetUpText::ChooseCertificate), m_server);
    choose->setObjectName(QStringLiteral("cmdCertificate"));
    m_test = new QPushButton(Text(SetUpText::TestServer), m_server);
    m_test->setObjectName(QStringLiteral("cmdTestServer"));
    for (QWidget* widget : std::initializer_list<QWidget*>{choose, about, m_test})
        form->addRow(widget);
    AddWidget(m_server);
    connect(choose, &QPushButton::clicked, this, &DatabasePage::ChooseCertificate);
    connect(m_test, &QPushButton::clicked, this, &DatabasePage::Test);
}

void DatabasePage::SetMode()
{
    const bool server = m_onServer->isChecked();
    m_server->setVisible(server);
    m_file->setEnabled(!server);
    m_choose->setEnabled(!server);
    Say({});
}

void DatabasePage::ChooseFile()
{
    const QString file =
        FilePicker{FilePicker::Kind::Database, m_new->isChecked(), FullPath(m_file->text())}.Pick(
            m_services.strings, this);
    if (!file.isEmpty())
        m_file->setText(file);
}

void DatabasePage::ChooseCertificate()
{
    QFileDialog dialog(this, Text(SetUpText::ChooseCertificate).remove(u'&'));
    dialog.setObjectName(QStringLiteral("fileDialog"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        m_certificate->setText(dialog.selectedFiles().constFirst());
}

SetUpRules::ServerEntry DatabasePage::Server() const
{
    return {m_host->text().trimmed(), m_name->text().trimmed(), m_certificate->text().trimmed()};
}

// The second press gives it up. An answer that comes then is not shown any more.
void DatabasePage::Test()
{
    if (m_limit.isActive()) {
        EndTest(Text(SetUpText::TestStopped));
        return;
    }
    if (const QString problem = SetUpRules::ProblemOf(Server(), m_services.strings); !problem.isEmpty()) {
        Say(problem);
        return;
    }
    Say(Text(SetUpText::TestingServer));
    m_test->setText(Text(SetUpText::StopTest));
    m_limit.start();
    m_lane.Do([this, test = ++m_tests, target = SetUpRules::TargetOf(Server()),
               &strings = m_services.strings]() -> Lane::Answer {
        const QString said = Try(target, strings);
        return [this, test, said] {
            if (test == m_tests && m_limit.isActive())
                EndTest(said);
        };
    });
}

void DatabasePage::EndTest(const QString& said)
{
    Leave();
    Say(said);
}

void DatabasePage::Leave()
{
    m_limit.stop();
    m_test->setText(Text(SetUpText::TestServer));
}

QString DatabasePage::Take(SetUpChoice& choice)
{
    const IStringSource& strings = m_services.strings;
    if (m_onServer->isChecked()) {
        const QString problem = SetUpRules::ProblemOf(Server(), strings);
        if (!problem.isEmpty())
            return problem;
        choice.location = {SetUpRules::TargetOf(Server()), {}};
        choice.database = SetUpChoice::Database::Existing;
        return {};
    }
    const QString file = FullPath(m_file->text());
    const QString problem = m_new->isChecked() ? SetUpRules::ProblemOfNewFile(file, strings)
                                               : SetUpRules::ProblemOfExistingFile(file, strings);
    if (!problem.isEmpty())
        return problem;
    choice.location = dao::LocationOf(file);
    choice.database = m_new->isChecked() ? SetUpChoice::Database::New : SetUpChoice::Database::Existing;
    return {};
}

void DatabasePage::Skip(SetUpChoice& choice)
{
    choice.database = SetUpChoice::Database::Later;
}
