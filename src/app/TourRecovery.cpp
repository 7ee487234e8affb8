// The chapter of the guided tour in which the radio dies in the middle of things and comes back.

#include "app/Demonstration.h"
#include "app/TextIds.h"
#include "app/TourHand.h"
#include "app/TourScript.h"
#include "core/StringSource.h"

namespace {

const QString Agent = QStringLiteral("frmMap27Agent");
const QString Progress = QStringLiteral("txtLog");
const QString LinkText = QStringLiteral("linkText");

constexpr int NoticedWithin = 5000; // ms

void Send(const QString& address)
{
    TourHand::Type(QStringLiteral("cmbAddress"), address);
    TourHand::Click(QStringLiteral("cmdSend"));
}

void SendText(const QString& address, const QString& text)
{
    TourHand::Type(QStringLiteral("cmbTextMessage"), text);
    Send(address);
}

void SendStatus(const QString& address, const QString& code)
{
    TourHand::Type(QStringLiteral("cmbStatusMessage"), code);
    Send(address);
}

} // namespace

void TourScript::KillRadio(const QString& during)
{
    Add(
        QStringLiteral("radio-dies-during-") + during,
        QStringLiteral("the loss in the strip within five seconds and the dialogue closed"),
        [this] { m_demonstration.KillRadio(); },
        All({Contains(LinkText, Text(AppText::LinkLost).section(QLatin1Char('#'), 0, 0)), Hidden(Agent)}));
    m_steps.back().patience = NoticedWithin;
    Add(
        QStringLiteral("radio-back-after-") + during,
        QStringLiteral("the strip without a complaint, nobody having clicked"),
        [this] { m_demonstration.RestartRadio(); }, Shows(LinkText, QString()));
}

void TourScript::Recovery()
{
    const QString lost = QStringLiteral("Assistance is coming");
    Add(
        QStringLiteral("status-under-way"), QStringLiteral("a status on its way to a slow radio"),
        [this] {
            SelectMessage(QStringLiteral("status"));
            SendStatus(QStringLiteral("Unit25"), QStringLiteral("05"));
        },
        Contains(Progress, Text(AppText::SendingWait)));
    KillRadio(QStringLiteral("status"));
    Add(
        QStringLiteral("status-after-loss"),
        QStringLiteral("the next status delivered, the lost one nowhere in the log"),
        [] { SendStatus(QStringLiteral("Unit20"), QStringLiteral("06")); },
        All({LogShows(QStringLiteral("06 - Return to base")), LogLacks(lost)}));

    Add(
        QStringLiteral("text-under-way"), QStringLiteral("a text on its way to a slow radio"),
        [this] {
            SelectMessage(QStringLiteral("text"));
            SendText(QStringLiteral("Unit25"), QStringLiteral("This one is lost"));
        },
        Contains(Progress, Text(AppText::SendingWait)));
    KillRadio(QStringLiteral("text"));
    Add(
        QStringLiteral("text-after-loss"),
        QStringLiteral("the next text delivered, the lost one nowhere in the log"),
        [] { SendText(QStringLiteral("Unit20"), QStringLiteral("This one arrives")); },
        All({LogShows(QStringLiteral("This one arrives")), LogLacks(QStringLiteral("This one is lost"))}));

    Add(
        QStringLiteral("call-under-way"), QStringLiteral("a call connected"),
        [this] {
            SelectMessage(QStringLiteral("call"));
            Send(QStringLiteral("Unit20"));
        },
        Contains(Progress, Text(AppText::ConnectedTalk)));
    KillRadio(QStringLiteral("call"));
    Add(
        QStringLiteral("call-after-loss"), QStringLiteral("the next call connected"),
        [] { Send(QStringLiteral("Unit20")); }, Contains(Progress, Text(AppText::ConnectedTalk)));
    Add(
        QStringLiteral("call-after-loss-ended"), QStringLiteral("the dialogue closed"),
        [] { TourHand::Click(QStringLiteral("cmdAnswerHungup")); }, Hidden(Agent));
}
