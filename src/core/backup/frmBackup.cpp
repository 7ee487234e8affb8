#include "core/backup/frmBackup.h"

#include "core/backup/DailyBackup.h"
#include "core/backup/TextIds.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace {

constexpr int MostGenerations = 999;
constexpr int MostDays = 3650;
constexpr int FieldWidth = 44; // characters; a typical path

} // namespace

frmBackup::frmBackup(Settings& settings, IPrompt& prompt, const IStringSource& strings, QWidget* parent)
    : QDialog(parent),
      m_settings(settings),
      m_prompt(prompt),
      m_strings(strings),
      txtBackupFolder(new QLineEdit(this))
{
    setObjectName(QStringLiteral("frmBackup"));
    setProperty("textId", BackupText::Caption);
    auto* form = new QFormLayout(this);
    txtBackupFolder->setObjectName(QStringLiteral("txtBackupFolder"));
    txtBackupFolder->setMinimumWidth(FieldWidth * fontMetrics().averageCharWidth());
    auto* label = new QLabel(this);
    label->setProperty("textId", BackupText::Folder);
    label->setBuddy(txtBackupFolder);
    auto* pick = new QPushButton(this);
    pick->setObjectName(QStringLiteral("cmdPickBackupFolder"));
    pick->setProperty("textId", BackupText::Pick);
    pick->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    row->addWidget(txtBackupFolder);
    row->addWidget(pick);
    form->addRow(label, row);
    m_newest = AddNumber("spnBackupNewest", BackupText::Newest, MostGenerations);
    m_days = AddNumber("spnBackupDays", BackupText::Days, MostDays);
    auto* note = new QLabel(this);
    note->setProperty("textId", BackupText::Note);
    note->setWordWrap(true);
    form->addRow(note);
    auto* buttons = new QDialogButtonBox(this);
    auto* save = buttons->addButton(QString(), QDialogButtonBox::AcceptRole);
    save->setObjectName(QStringLiteral("cmdSaveBackup"));
    save->setProperty("textId", BackupText::Save);
    auto* cancel = buttons->addButton(QString(), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdCancelBackup"));
    cancel->setProperty("textId", BackupText::Cancel);
    form->addRow(buttons);
    LoadCaptions(*this, strings);
    connect(pick, &QPushButton::clicked, this, &frmBackup::PickFolder);
    connect(save, &QPushButton::clicked, this, &frmBackup::Save);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    Load();
}

QSpinBox* frmBackup::AddNumber(const char* name, int label, int highest)
{
    auto* number = new QSpinBox(this);
    number->setObjectName(QLatin1String(name));
    number->setRange(1, highest);
    auto* caption = new QLabel(this);
    caption->setProperty("textId", label);
    caption->setBuddy(number);
    dynamic_cast<QFormLayout*>(layout())->addRow(caption, number);
    return number;
}

void frmBackup::PickFolder()
{
    QFileDialog picker(this, m_strings.LoadString(BackupText::PickCaption), txtBackupFolder->text());
    picker.setObjectName(QStringLiteral("fileDialog"));
    picker.setFileMode(QFileDialog::Directory);
    picker.setOption(QFileDialog::ShowDirsOnly);
    if (picker.exec() == Accepted && !picker.selectedFiles().isEmpty())
        txtBackupFolder->setText(picker.selectedFiles().constFirst());
}

// What cannot be read is told, and shown as it is without a choice.
void frmBackup::Load()
{
    const BackupPlan plan;
    m_newest->setValue(plan.newest);
    m_days->setValue(plan.days);
    try {
        txtBackupFolder->setText(m_settings.Read(DailyBackup::Section, DailyBackup::FolderKey, {}));
        const BackupPlan chosen = DailyBackup::PlanIn(m_settings);
        m_newest->setValue(chosen.newest);
        m_days->setValue(chosen.days);
    } catch (const std::exception& failure) {
        m_prompt.ShowWarning(DescribeError(failure, m_strings));
    }
}

// Whether the folder is there the backup itself finds out, in its lane: it may be on a share that hangs.
void frmBackup::Save()
{
    const QString folder = txtBackupFolder->text().trimmed();
    if (!folder.isEmpty() && !QDir::isAbsolutePath(folder)) {
        m_prompt.ShowError(m_strings.LoadString(BackupText::NotAbsolute));
        txtBackupFolder->setFocus();
        return;
    }
    try {
        m_settings.Write(DailyBackup::Section, DailyBackup::FolderKey, folder);
        m_settings.Write(DailyBackup::Section, DailyBackup::NewestKey, QString::number(m_newest->value()));
        m_settings.Write(DailyBackup::Section, DailyBackup::DaysKey, QString::number(m_days->value()));
        ProgramLog::Write(QStringLiteral("Settings: backups in %1").arg(folder));
        accept();
    } catch (const std::exception& failure) {
        m_prompt.ShowError(DescribeError(failure, m_strings));
    }
}
