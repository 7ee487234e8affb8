#include "core/logon/frmSettings.h"

#include "core/backup/frmBackup.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/logon/frmSounds.h"
#include "core/session/DbSession.h"
#include "core/settings/SerialDefaults.h"
#include "core/settings/SerialPortList.h"
#include "core/settings/Settings.h"
#include "core/sounds/Beeper.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/widgets/Captions.h"
#include "core/widgets/FormLayout.h"
#include "dao/base/Location.h"
#include "ui_frmSettings.h"

#include <functional>
#include <optional>

namespace {

constexpr int FieldWidth = 52; // characters; a typical path

// The picker's file; nothing when it was cancelled or failed, which the dialog does not report.
std::optional<QString> Picked(const std::function<QString()>& picker)
{
    try {
        return picker();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

frmSettings::frmSettings(const SettingsServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmSettings>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    m_ui->cmbPort->setCompleter(nullptr); // what is typed stays as it is
    connect(m_ui->cmbPort, &QComboBox::activated, this,
            [this](int item) { m_ui->cmbPort->setEditText(m_ui->cmbPort->itemData(item).toString()); });
    m_ui->cmbBaudRate->addItem(services.strings.LoadString(CoreText::Baud1200), 1200);
    m_ui->cmbBaudRate->addItem(services.strings.LoadString(CoreText::Baud9600), 9600);
    m_ui->txtDbFile->setMinimumWidth(FieldWidth * fontMetrics().averageCharWidth());
    MakeNarrow(*m_ui->cmdSelDbFile);
    MakeNarrow(*m_ui->cmdSelSysFile);

    connect(
        m_ui->cmdSelDbFile, &QPushButton::clicked, this,
        [this] {
            if (const auto file = Picked([this] { return m_services.session.SelectDatabaseFile(); }))
                m_ui->txtDbFile->setText(*file);
        });
    connect(m_ui->cmdSelSysFile, &QPushButton::clicked, this, [this] {
        if (const auto file = Picked([this] { return m_services.session.SelectWorkgroupFile(); }))
            m_ui->txtSysFile->setText(*file);
    });
    connect(m_ui->txtDbFile, &QLineEdit::textChanged, this, &frmSettings::ShowWhetherWorkgroupIsUsed);
    connect(m_ui->cmdSounds, &QPushButton::clicked, this, [this] {
        frmSounds sounds(m_services.settings, m_services.prompt, m_services.beeper, m_services.strings, this);
        sounds.exec();
    });
    connect(m_ui->cmdBackup, &QPushButton::clicked, this, [this] {
        frmBackup backup(m_services.settings, m_services.prompt, m_services.strings, this);
        backup.exec();
    });
    connect(m_ui->cmdSave, &QPushButton::clicked, this, &frmSettings::Save);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmSettings::~frmSettings() = default;

int frmSettings::exec()
{
    show();
    return isVisible() ? QDialog::exec() : static_cast<int>(Rejected);
}

void frmSettings::setVisible(bool visible)
{
    if (visible && !isVisible() && !Activate())
        return;
    QDialog::setVisible(visible);
}

// Fills in what can be read, and reports the first failure. False when the dialog must not be shown.
bool frmSettings::Activate()
{
    std::optional<Error> first;
    for (const auto load : {&frmSettings::LoadFiles, &frmSettings::LoadSerial, &frmSettings::LoadOptions}) {
        try {
            (this->*load)();
        } catch (const std::exception& failure) {
            if (!first)
                first = Error(CodeOf(failure), DescribeError(failure, m_services.strings));
        }
    }
    if (!first)
        return true;
    const bool noFile = first->Code() == ErrorCode::NoFile;
    m_services.prompt.ShowError(noFile ? m_services.strings.LoadString(CoreText::SelectFile)
                                       : first->Description());
    return !noFile;
}

void frmSettings::LoadFiles()
{
    m_ui->txtSysFile->setText(m_services.session.WorkgroupFile());
    m_ui->txtDbFile->setText(m_services.session.DatabaseFile());
    ShowWhetherWorkgroupIsUsed(m_ui->txtDbFile->text());
}

void frmSettings::ShowWhetherWorkgroupIsUsed(const QString& database)
{
    const bool server = dao::IsServerTarget(database.trimmed());
    m_ui->lblServerAccounts->setVisible(server);
    for (QWidget* control :
         {static_cast<QWidget*>(m_ui->lblSystemFile), static_cast<QWidget*>(m_ui->txtSysFile),
          static_cast<QWidget*>(m_ui->cmdSelSysFile)})
        control->setEnabled(!server);
}

void frmSettings::LoadSerial()
{
    FillPorts();
    m_ui->cmbPort->setCurrentIndex(-1);
    m_ui->cmbPort->setEditText(m_services.serial.DefaultPort());
    m_ui->cmbBaudRate->setCurrentIndex(-1);
    m_ui->cmbBaudRate->setCurrentIndex(m_ui->cmbBaudRate->findData(m_services.serial.DefaultBaud()));
}

// The fixed items and the ports that exist now, each with its device. Choosing one enters only the port.
void frmSettings::FillPorts()
{
    const IStringSource& strings = m_services.strings;
    m_ui->cmbPort->clear();
    for (const int id : {CoreText::PortCom1, CoreText::PortCom2, CoreText::PortCom3, CoreText::PortCom4})
        m_ui->cmbPort->addItem(strings.LoadString(id), strings.LoadString(id));
    if (!m_services.ports)
        return;
    for (const SerialPortChoice& choice : m_services.ports->Ports()) {
        const QString text = choice.description.isEmpty() ? choice.port
                                                          : FormatMessage(strings, CoreText::PortWithDevice,
                                                                          {choice.port, choice.description});
        m_ui->cmbPort->addItem(text, choice.port);
    }
}

void frmSettings::LoadOptions()
{
    m_ui->chkNotifyWithBeep->setChecked(m_services.settings.BeepNotify());
    m_ui->chkPrintfEscapes->setChecked(m_services.settings.PrintfEscapes());
}

void frmSettings::Save()
{
    const QString port = m_ui->cmbPort->currentText().trimmed();
    if (port.isEmpty()) {
        m_services.beeper.Beep();
        m_services.prompt.ShowInfo(m_services.strings.LoadString(CoreText::SelectSerialPort));
        m_ui->cmbPort->setFocus();
        return;
    }
    try {
        Store(port);
        ProgramLog::Write(
            QStringLiteral("Settings: stored, port %1, database %2").arg(port, m_ui->txtDbFile->text()));
        accept();
    } catch (const std::exception& failure) {
        m_services.prompt.ShowError(DescribeError(failure, m_services.strings));
    }
}

void frmSettings::Store(const QString& port)
{
    m_services.session.SetWorkgroupFile(m_ui->txtSysFile->text());
    m_services.session.SetDatabaseFile(m_ui->txtDbFile->text());
    m_services.serial.SetDefaultPort(port);
    // With no rate chosen, the stored one, which is not in the list, is kept.
    if (m_ui->cmbBaudRate->currentIndex() >= 0)
        m_services.serial.SetDefaultBaud(m_ui->cmbBaudRate->currentData().toInt());
    m_services.settings.SetBeepNotify(m_ui->chkNotifyWithBeep->isChecked());
    m_services.settings.SetPrintfEscapes(m_ui->chkPrintfEscapes->isChecked());
}
