#pragma once

#include "mainwindow/ScadaSwitch.h"
#include "radio/Views.h"

#include <QWidget>

class Map27Executive;
class QComboBox;
class QListView;
class ScadaModel;
class Settings;
struct IPrompt;
struct IStringSource;
struct SessionState;

// "picScada": watches and drives one outstation, addressed like a radio. Reports are taken from any sender.
class ScadaPane : public QWidget, public IScadaView {
    Q_OBJECT

public:
    struct Parts {
        const IStringSource& strings;
        IPrompt& prompt;
        Settings& settings;
        Map27Executive& executive;
        const SessionState& session;
    };

    ScadaPane(const Parts& parts, QWidget* parent);

    // The stored names and the unit. Raises Error when they cannot be read.
    void Load();
    // Raises Error when the settings cannot be written.
    void StoreUnit();

    void UpdateScadaSensors(const QString& bits) override;
    void UpdateScadaControls(const QString& bits) override;
    void ReflectScadaControl() override;
    void CancelScadaControl() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Build();
    QListView* NewList(const char* name, int accessibleNameId, ScadaModel& model);
    QWidget* NewButton(const char* name, int textId, int statusCode);
    void SwitchSelected();
    void StoreName(ScadaModel& model, int item, const QString& name);

    Parts m_parts;
    ScadaModel* m_sensors;
    ScadaModel* m_controls;
    ScadaSwitch m_switch;
    QComboBox* cmbScadaUnit = nullptr;
    QListView* lvControls = nullptr;
};
