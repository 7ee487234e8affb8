#pragma once

#include <QDialog>
#include <memory>

class Settings;
struct IBeeper;
struct IDbLogon;
struct IPrompt;
struct ISerialPortList;
struct ISerialDefaults;
struct IStringSource;
namespace Ui {
class frmSettings;
}

// What the settings dialog reads and stores; all must outlive it.
struct SettingsServices {
    IDbLogon& session;
    ISerialDefaults& serial;
    Settings& settings;
    IPrompt& prompt;
    IBeeper& beeper;
    const IStringSource& strings;
    const ISerialPortList* ports = nullptr; // null: only the fixed ones are offered
};

// Edits the operator's settings. Created once and hidden between uses; it reads all values each time it is
// shown. Show it with exec(). When no file is configured it says so and does not appear.
class frmSettings : public QDialog {
    Q_OBJECT

public:
    explicit frmSettings(const SettingsServices& services, QWidget* parent = nullptr);
    ~frmSettings() override;

    int exec() override;
    void setVisible(bool visible) override;

private:
    bool Activate();
    void LoadFiles();
    // With the database on a server there is no workgroup file.
    void ShowWhetherWorkgroupIsUsed(const QString& database);
    void LoadSerial();
    void FillPorts();
    void LoadOptions();
    void Save();
    void Store(const QString& port);

    SettingsServices m_services;
    std::unique_ptr<Ui::frmSettings> m_ui;
};
