#pragma once

#include "mainwindow/scada/ScadaGuard.h"
#include "mainwindow/scada/ScadaSwitch.h"
#include "radio/agent/Views.h"

#include <QWidget>
#include <map>

class Map27Executive;
class QComboBox;
class QLabel;
class QListView;
class QTimer;
class ScadaModel;
class Settings;
struct Clock;
struct IDbSession;
struct IPrompt;
struct IStringSource;
struct SessionState;

// "picScada": watches and drives outstations, each addressed like a radio. Reports are taken from any sender
// and kept for it; the pane shows the chosen unit or, while none is chosen, the one that reported last.
class ScadaPane : public QWidget, public IScadaView {
    Q_OBJECT

public:
    struct Parts {
        const IStringSource& strings;
        IPrompt& prompt;
        Settings& settings;
        Map27Executive& executive;
        const SessionState& session;
        IDbSession& database;
        const Clock& clock;
    };

    ScadaPane(const Parts& parts, QWidget* parent);

    // The stored names and the unit. Raises Error when they cannot be read.
    void Load();
    // The second step for a status that somebody sends from elsewhere and that would switch what is marked as
    // critical. False: it must not be sent.
    bool MayBeSent(const QString& party, int statusCode);
    // Raises Error when the settings cannot be written.
    void StoreUnit();
    // Call after names may have come to mean other addresses.
    void ShowUnit();

    // With nothing scrolled.
    QSize minimumSizeHint() const override;

    void UpdateScadaSensors(const QString& bits, const ScadaSource& source) override;
    void UpdateScadaControls(const QString& bits, const ScadaSource& source) override;
    void ReflectScadaControl() override;
    void CancelScadaControl() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Build();
    QWidget* NewContent();
    QListView* NewList(const char* name, int accessibleNameId, ScadaModel& model);
    QWidget* NewButton(const char* name, int textId, int statusCode);
    QString ChosenUnit() const;
    QString AddressOf(const QString& unit) const;
    ScadaStation& Reporting(const ScadaSource& source);
    void OfferUnit(const QString& name);
    void ShowSource(QLabel& label, int kindId, const ScadaStation& station, const QDateTime& time);
    void Command(const QString& unit, int statusCode);
    bool MaySwitch(int control, bool off);
    bool IsOutstation(const QString& party) const;
    bool MayCommandAll(int statusCode);
    void ShowGuardMenu(QListView& list, const QPoint& place);
    void SwitchSelected();
    void StoreName(ScadaModel& model, int item, const QString& name);

    Parts m_parts;
    ScadaModel* m_sensors;
    ScadaModel* m_controls;
    ScadaSwitch m_switch;
    ScadaGuard m_guard;
    QTimer* m_ageing;
    QWidget* m_content = nullptr;
    std::map<QString, ScadaStation> m_stations; // by address
    QString m_reportedLast;                     // address of a station
    QComboBox* cmbScadaUnit = nullptr;
    QLabel* lblSensors = nullptr;
    QLabel* lblControls = nullptr;
    QListView* lvControls = nullptr;
};
