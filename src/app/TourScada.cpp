// The chapter of the guided tour about the outstation.

#include "app/TextIds.h"
#include "app/TourHand.h"
#include "app/TourItems.h"
#include "app/TourScript.h"
#include "mainwindow/Outcome.h"
#include "mainwindow/ScadaModel.h"

namespace {

const QString Agent = QStringLiteral("frmMap27Agent");
const QString Sensors = QStringLiteral("lvSensors");
const QString Controls = QStringLiteral("lvControls");

} // namespace

TourScript::Look TourScript::Signal(const QString& list, int number, const char* picture, Outcome outcome)
{
    return [=] {
        const QString seen = TourItems::RowValue(list, number, ScadaModel::PictureRole);
        const QString sign = TourItems::RowValue(list, number, OutcomeRole);
        const bool same = seen == QLatin1String(picture) && sign.toInt() == static_cast<int>(outcome);
        return same ? QString()
                    : QStringLiteral("%1 %2 with picture %3, outcome %4")
                          .arg(list)
                          .arg(number)
                          .arg(seen, sign);
    };
}

void TourScript::Outstation()
{
    Add(
        QStringLiteral("scada"), QStringLiteral("the panel, nothing known yet"),
        [] {
            const QString address = QStringLiteral("cmbAddress");
            TourHand::Key(address, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
            TourHand::Type(QStringLiteral("cmbScadaUnit"), QStringLiteral("Plant30"));
        },
        All({Visible(QStringLiteral("picScada")), Signal(Sensors, 0, "soff")}));
    Add(
        QStringLiteral("scada-name"), QStringLiteral("a sensor with its name"),
        [] { TourItems::RenameRow(Sensors, 0, QStringLiteral("Intake gate")); },
        [] {
            return TourItems::RowValue(Sensors, 0, Qt::DisplayRole) == QLatin1String("Intake gate")
                       ? QString()
                       : QStringLiteral("no name");
        });
    Add(
        QStringLiteral("scada-query-sensors"), QStringLiteral("sensors 0 and 2 on"),
        [] { TourHand::Click(QStringLiteral("cmdQrySensors")); },
        All({Hidden(Agent), Signal(Sensors, 0, "son"), Signal(Sensors, 1, "soff"),
             Signal(Sensors, 2, "son")}));
    Add(
        QStringLiteral("scada-query-controls"), QStringLiteral("control 0 on"),
        [] { TourHand::Click(QStringLiteral("cmdQryControls")); },
        All({Hidden(Agent), Signal(Controls, 0, "con"), Signal(Controls, 3, "coff")}));
    SwitchControls();
    Add(
        QStringLiteral("scada-all-on"), QStringLiteral("all controls on, as the outstation reports"),
        [] { TourHand::Click(QStringLiteral("cmdALLON")); },
        All({Hidden(Agent), Signal(Controls, 0, "con"), Signal(Controls, 7, "con")}));
    Add(
        QStringLiteral("talkgroups-again"), QStringLiteral("the talkgroups"),
        [] { TourHand::Key(QStringLiteral("cmbAddress"), Qt::Key_Tab, Qt::ControlModifier); },
        Visible(QStringLiteral("tvGroups")));
}

void TourScript::SwitchControls()
{
    Add(
        QStringLiteral("scada-switch-waits"), QStringLiteral("control 3 waiting for the answer"),
        [this] {
            Radio(QStringLiteral("behave Plant30 status busy 300 1500"));
            TourItems::DoubleClickRow(Controls, 3);
        },
        All({Visible(Agent), Signal(Controls, 3, "cwait")}));
    Add(
        QStringLiteral("scada-switched"), QStringLiteral("control 3 on"), [] {},
        All({Hidden(Agent), Signal(Controls, 3, "con")}));
    Add(
        QStringLiteral("scada-switch-failed"), QStringLiteral("the warning, control 5 still off"),
        [this] {
            Radio(QStringLiteral("behave Plant30 status refuses 300 600"));
            TourItems::DoubleClickRow(Controls, 5);
        },
        All({Box(AppText::MessageNotSent), Signal(Controls, 5, "coff", Outcome::NotDone)}));
    Add(
        QStringLiteral("scada-switch-failed-seen"), QStringLiteral("control 5 marked as not switched"),
        [this] {
            TourHand::AnswerBox(true);
            Radio(QStringLiteral("behave Plant30 status answers"));
        },
        Signal(Controls, 5, "coff", Outcome::NotDone));
    Add(
        QStringLiteral("scada-sensor-changed"), QStringLiteral("sensor 6 on and sensor 1 unknown, unasked"),
        [this] {
            Radio(QStringLiteral("sensor Plant30 6 on"));
            Radio(QStringLiteral("sensor Plant30 1 unknown"));
        },
        All({Signal(Sensors, 6, "son"), [] {
                 return TourItems::RowValue(Sensors, 1, ScadaModel::GhostRole) == QLatin1String("true")
                            ? QString()
                            : QStringLiteral("sensor 1 known");
             }}));
}
