#include "core/logon/frmLogon.h"

#include "core/logon/LogonPause.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/widgets/Captions.h"
#include "core/widgets/FormLayout.h"
#include "dao/base/TextIds.h"
#include "ui_frmLogon.h"

using namespace std::chrono_literals;

namespace {

constexpr auto TickInterval = 200ms;
constexpr auto PaintInterval = 50ms; // at least, during a migration
constexpr int FieldWidth = 36;       // characters
constexpr int MessageLines = 3;      // kept free for the message, so that the dialog keeps its size

} // namespace

frmLogon::frmLogon(const IStringSource& strings, LogonPause& pause, Attempt attempt, QWidget* parent)
    : QDialog(parent),
      m_strings(strings),
      m_pause(pause),
      m_attempt(std::move(attempt)),
      m_ui(std::make_unique<Ui::frmLogon>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, strings);
    m_ui->txtUserName->setMinimumWidth(FieldWidth * fontMetrics().averageCharWidth());
    m_ui->lblMessage->setMinimumHeight(MessageLines * fontMetrics().lineSpacing());
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmLogon::TryLogon);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(&m_timer, &QTimer::timeout, this, &frmLogon::Tick);
    Tick();
}

frmLogon::~frmLogon() = default;

void frmLogon::SetAppName(const QString& name)
{
    setWindowTitle(FormatMessage(m_strings, CoreText::LogonCaption, {name}));
}

void frmLogon::SetUserName(const QString& name)
{
    m_ui->txtUserName->setText(name);
    if (name.isEmpty())
        m_ui->txtUserName->setFocus();
    else
        m_ui->txtPassword->setFocus();
}

void frmLogon::TryLogon()
{
    const QString userName = m_ui->txtUserName->text().trimmed();
    if (userName.isEmpty()) {
        ShowMessage(m_strings.LoadString(CoreText::UserNameMissing));
        m_ui->txtUserName->setFocus();
        return;
    }
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const Outcome outcome = m_attempt(userName, m_ui->txtPassword->text());
    QGuiApplication::restoreOverrideCursor();
    m_ui->txtPassword->clear();
    switch (outcome) {
    case Outcome::LoggedOn:
        m_pause.Succeeded();
        accept();
        break;
    case Outcome::Failed:
        reject();
        break;
    case Outcome::WrongPassword:
        m_pause.Failed();
        ShowMessage(m_strings.LoadString(DaoText::WrongPassword));
        m_ui->txtPassword->setFocus();
        break;
    }
}

void frmLogon::ShowMigration(const QString& database, int percent)
{
    const QString text =
        FormatMessage(m_strings, CoreText::Migrating, {database, QString::number(percent / 10 * 10)});
    if (text != m_refusal)
        ShowMessage(text);
    else if (m_painted.isValid() && !m_painted.hasExpired(PaintInterval.count()))
        return;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_painted.start();
}

void frmLogon::ShowMessage(const QString& text)
{
    m_refusal = text;
    Tick();
}

void frmLogon::Tick()
{
    const auto remaining = m_pause.Remaining();
    const bool waiting = remaining > 0ms;
    m_ui->cmdOK->setEnabled(!waiting);
    QString text = m_refusal;
    if (waiting) {
        const auto seconds = std::chrono::ceil<std::chrono::seconds>(remaining).count();
        text += u'\n' + FormatMessage(m_strings, CoreText::LogonPause, {QString::number(seconds)});
        if (!m_timer.isActive())
            m_timer.start(TickInterval);
    } else {
        m_timer.stop();
    }
    ShowMessageLine(*this, *m_ui->lblMessage, text.trimmed());
}
