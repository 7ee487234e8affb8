#pragma once

#include <QDialog>

class QLineEdit;
class QSpinBox;
class Settings;
struct IPrompt;
struct IStringSource;

// Where the daily backup goes, and how many of them are kept. Made for each use.
class frmBackup : public QDialog {
    Q_OBJECT

public:
    // All must outlive it.
    frmBackup(Settings& settings, IPrompt& prompt, const IStringSource& strings, QWidget* parent);

private:
    QSpinBox* AddNumber(const char* name, int label, int highest);
    void PickFolder();
    void Load();
    void Save();

    Settings& m_settings;
    IPrompt& m_prompt;
    const IStringSource& m_strings;
    QLineEdit* txtBackupFolder;
    QSpinBox* m_newest;
    QSpinBox* m_days;
};
