#pragma once

#include "core/sounds/Sound.h"

#include <QDialog>
#include <vector>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QSlider;
class Settings;
struct IBeeper;
struct IPrompt;
struct IStringSource;
struct SoundChoice;

// The operator's choice of sounds: for each kind whether it is heard, how it sounds and how loud, with a
// button that plays it. An emergency can be made quieter, but not off. Made for each use.
class frmSounds : public QDialog {
    Q_OBJECT

public:
    // All must outlive it.
    frmSounds(Settings& settings, IPrompt& prompt, IBeeper& beeper, const IStringSource& strings,
              QWidget* parent);

private:
    struct Row {
        SoundKind kind;
        QCheckBox* on;
        QComboBox* tune;
        QSlider* volume;
    };

    void AddRow(QGridLayout& grid, int line, SoundKind kind);
    void Load();
    void Save();
    static SoundChoice ChoiceOf(const Row& row);

    Settings& m_settings;
    IPrompt& m_prompt;
    IBeeper& m_beeper;
    const IStringSource& m_strings;
    std::vector<Row> m_rows;
};
