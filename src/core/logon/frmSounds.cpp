#include "core/logon/frmSounds.h"

#include "core/desktop/Prompt.h"
#include "core/settings/Settings.h"
#include "core/sounds/Beeper.h"
#include "core/sounds/SoundChoice.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/widgets/Captions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace {

constexpr int Step = 10; // percent

int TextOf(SoundKind kind)
{
    switch (kind) {
    case SoundKind::Emergency:
        return CoreText::SoundEmergency;
    case SoundKind::Ringing:
        return CoreText::SoundRinging;
    case SoundKind::RadioLost:
        return CoreText::SoundRadioLost;
    case SoundKind::Failure:
        return CoreText::SoundFailure;
    case SoundKind::Status:
        return CoreText::SoundStatus;
    case SoundKind::Text:
        return CoreText::SoundText;
    }
    return 0;
}

} // namespace

frmSounds::frmSounds(Settings& settings, IPrompt& prompt, IBeeper& beeper, const IStringSource& strings,
                     QWidget* parent)
    : QDialog(parent),
      m_settings(settings),
      m_prompt(prompt),
      m_beeper(beeper),
      m_strings(strings)
{
    setObjectName(QStringLiteral("frmSounds"));
    setWindowTitle(strings.LoadString(CoreText::SoundsCaption));
    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    layout->addLayout(grid);
    for (const SoundKind kind : SoundKinds)
        AddRow(*grid, grid->rowCount(), kind);
    auto* note = new QLabel(
        strings.LoadString(beeper.HasOutput() ? CoreText::SoundsNote : CoreText::SoundsNoOutput), this);
    note->setWordWrap(true);
    layout->addWidget(note);
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* save =
        buttons->addButton(strings.LoadString(CoreText::SoundsSave), QDialogButtonBox::AcceptRole);
    save->setObjectName(QStringLiteral("cmdSaveSounds"));
    QPushButton* cancel =
        buttons->addButton(strings.LoadString(CoreText::SoundsCancel), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdCancelSounds"));
    layout->addWidget(buttons);
    connect(save, &QPushButton::clicked, this, &frmSounds::Save);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    NameLists(*this);
    Load();
}

void frmSounds::AddRow(QGridLayout& grid, int line, SoundKind kind)
{
    const QString name = m_strings.LoadString(TextOf(kind));
    const auto named = [&](QWidget* widget, const char* what, int text) {
        widget->setObjectName(QLatin1String(what) + QString::number(static_cast<int>(kind)));
        widget->setAccessibleName(FormatMessage(m_strings, text, {name}));
    };
    Row row{kind, new QCheckBox(name, this), new QComboBox(this), new QSlider(Qt::Horizontal, this)};
    named(row.on, "chkSound", CoreText::SoundOf);
    named(row.tune, "cmbTune", CoreText::SoundTuneOf);
    named(row.volume, "sldVolume", CoreText::SoundVolumeOf);
    row.on->setEnabled(kind != SoundKind::Emergency);
    for (int tune = 1; tune <= SoundTunes; ++tune)
        row.tune->addItem(FormatMessage(m_strings, CoreText::SoundTune, {QString::number(tune)}));
    row.volume->setRange(kind == SoundKind::Emergency ? SoundChoice::LowestOfEmergency : 0, 100);
    row.volume->setSingleStep(Step);
    row.volume->setPageStep(Step);
    auto* test = new QPushButton(m_strings.LoadString(CoreText::SoundTest), this);
    named(test, "cmdTest", CoreText::SoundTestOf);
    test->setAutoDefault(false);
    grid.addWidget(row.on, line, 0);
    grid.addWidget(row.tune, line, 1);
    grid.addWidget(row.volume, line, 2);
    grid.addWidget(test, line, 3);
    connect(test, &QPushButton::clicked, this, [this, row] {
        const SoundChoice choice = ChoiceOf(row);
        m_beeper.Play({row.kind, choice.tune, choice.volume});
    });
    connect(row.on, &QCheckBox::toggled, row.tune, &QWidget::setEnabled);
    connect(row.on, &QCheckBox::toggled, row.volume, &QWidget::setEnabled);
    m_rows.push_back(row);
}

// What cannot be read is told, and shown as it is without a choice.
void frmSounds::Load()
{
    QStringList problems;
    for (const Row& row : m_rows) {
        SoundChoice choice;
        try {
            choice = ReadSoundChoice(m_settings, row.kind);
        } catch (const std::exception& failure) {
            problems.append(DescribeError(failure, m_strings));
        }
        row.on->setChecked(choice.on);
        row.tune->setCurrentIndex(choice.tune);
        row.volume->setValue(choice.volume);
    }
    if (!problems.isEmpty())
        m_prompt.ShowWarning(problems.join(u'\n'));
}

void frmSounds::Save()
{
    try {
        for (const Row& row : m_rows)
            StoreSoundChoice(m_settings, row.kind, ChoiceOf(row));
        accept();
    } catch (const std::exception& failure) {
        m_prompt.ShowError(DescribeError(failure, m_strings));
    }
}

SoundChoice frmSounds::ChoiceOf(const Row& row)
{
    return {.on = row.on->isChecked(), .tune = row.tune->currentIndex(), .volume = row.volume->value()};
}
