#include "admin/frmAbout.h"

#include "admin/TextIds.h"
#include "core/base/AppPaths.h"
#include "core/desktop/Prompt.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "ui_frmAbout.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QSysInfo>
#include <optional>

namespace {

constexpr int FieldWidth = 40; // characters
constexpr int IconLines = 4;

// The desktop's program that shows what the computer is made of.
struct SystemInformationTool {
    QString program; // full path
    QStringList arguments;
};

// The first known one that is installed.
std::optional<SystemInformationTool> FindSystemInformationTool()
{
    const SystemInformationTool known[] = {
        {QStringLiteral("kinfocenter"), {}},
        {QStringLiteral("hardinfo2"), {}},
        {QStringLiteral("hardinfo"), {}},
        {QStringLiteral("gnome-control-center"), {QStringLiteral("info-overview")}},
        {QStringLiteral("lshw-gtk"), {}}};
    for (const SystemInformationTool& tool : known) {
        const QString path = QStandardPaths::findExecutable(tool.program);
        if (!path.isEmpty())
            return SystemInformationTool{path, tool.arguments};
    }
    return std::nullopt;
}

} // namespace

frmAbout::frmAbout(IPrompt& prompt, const IStringSource& strings, QWidget* parent)
    : QDialog(parent),
      m_prompt(prompt),
      m_strings(strings),
      m_ui(std::make_unique<Ui::frmAbout>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, strings);
    const QString title = QString::fromLatin1(AppPaths::Title);
    setWindowTitle(FormatMessage(strings, AdminText::AboutTitle, {title}));
    const int edge = IconLines * fontMetrics().lineSpacing();
    m_ui->picIcon->setPixmap(LoadIcon(QStringLiteral("veltorkyn")).pixmap(edge, edge));
    m_ui->lblTitle->setMinimumWidth(FieldWidth * fontMetrics().averageCharWidth());
    m_ui->lblTitle->setText(title);
    const QString version = QCoreApplication::applicationVersion();
    m_ui->lblVersion->setText(version); // its caption stands before it
    m_ui->lblVersion->setAccessibleName(FormatMessage(strings, AdminText::Version, {version}));
    m_ui->lblDescription->setText(strings.LoadString(AdminText::Description));
    m_ui->lblLicence->setText(strings.LoadString(AdminText::Licence));
    m_ui->lblPlatform->setText(FormatMessage(
        strings, AdminText::Platform, {QString::fromLatin1(qVersion()), QSysInfo::prettyProductName()}));
    if (!FindSystemInformationTool()) {
        m_ui->cmdSysInfo->setEnabled(false);
        m_ui->cmdSysInfo->setToolTip(strings.LoadString(AdminText::NoSystemInformation));
    }
    connect(m_ui->cmdSysInfo, &QPushButton::clicked, this, &frmAbout::ShowSystemInformation);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

frmAbout::~frmAbout() = default;

void frmAbout::ShowSystemInformation()
{
    const auto tool = FindSystemInformationTool();
    if (!tool)
        m_prompt.ShowWarning(m_strings.LoadString(AdminText::NoSystemInformation));
    else if (!QProcess::startDetached(tool->program, tool->arguments))
        m_prompt.ShowWarning(FormatMessage(m_strings, AdminText::SystemInformationFailed, {tool->program}));
}
