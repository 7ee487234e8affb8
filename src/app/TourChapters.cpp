// What the guided tour does, chapter by chapter.

#include "app/Demonstration.h"
#include "app/TextIds.h"
#include "app/TourGestures.h"
#include "app/TourScript.h"
#include "core/FormatMessage.h"
#include "core/StringSource.h"
#include "dao/Location.h"

#include <QFile>

namespace {

const QString Agent = QStringLiteral("frmMap27Agent");
const QString Address = QStringLiteral("cmbAddress");
const QString TextBox = QStringLiteral("cmbTextMessage");
const QString StatusBox = QStringLiteral("cmbStatusMessage");
const QString Main = QStringLiteral("main");
const QString NewPassword = QStringLiteral("oliver-new");

} // namespace

void TourScript::FirstStart()
{
    Add(
        QStringLiteral("start"), QStringLiteral("the main window, nobody logged on"), [] {},
        All({Visible(QStringLiteral("winMain")), Shows(QStringLiteral("ident"), QStringLiteral("---"))}));
    Add(
        QStringLiteral("settings"), QStringLiteral("the settings dialog"),
        [] { Menu("mbSystem", "miSettings"); }, Visible(QStringLiteral("frmSettings")));
    Add(
        QStringLiteral("settings-entered"), QStringLiteral("the radio's port as typed"),
        [this] {
            Type("cmbPort", m_demonstration.PortLink());
            Type("txtDbFile", m_demonstration.DatabaseFile());
            Type("txtSysFile", m_demonstration.WorkgroupFile());
        },
        Shows(QStringLiteral("cmbPort"), m_demonstration.PortLink()));
    Add(
        QStringLiteral("settings-saved"),
        QStringLiteral("the dialog closed and the port in the settings file"), [] { Click("cmdSave"); },
        All({Hidden(QStringLiteral("frmSettings")), [this] {
                 QFile file(m_demonstration.SettingsFile());
                 const bool stored = file.open(QIODevice::ReadOnly) &&
                                     file.readAll().contains(m_demonstration.PortLink().toUtf8());
                 return stored ? QString() : QStringLiteral("no port in the file");
             }}));
    Add(
        QStringLiteral("first-run"), QStringLiteral("the offer to create a database"),
        [] { Click("tbMain_session"); }, Visible(QStringLiteral("frmFirstRun")));
    Add(
        QStringLiteral("first-run-entered"), QStringLiteral("the first administrator's name"),
        [] {
            const Demonstration::Account& account = Demonstration::Administrator;
            Type("txtUserName", account.user);
            Type("txtPassword", account.password);
            Type("txtRepeat", account.password);
        },
        Shows(QStringLiteral("txtUserName"), Demonstration::Administrator.user));
    Add(
        QStringLiteral("numbering-not-configured"),
        QStringLiteral("the hint that the numbering is not configured"), [] { Click("cmdOK"); },
        Box(AppText::NumberingNotConfigured));
    Add(
        QStringLiteral("administrator"),
        QStringLiteral("the first administrator logged on, Admin menu visible"),
        [] { TourHand::AnswerBox(true); }, Shows(Main, Text(AppText::LoggedOn)));
    Add(
        QStringLiteral("logout-question"), QStringLiteral("the question before the logout"),
        [] { Click("tbMain_session"); }, Box(AppText::LogoutQuestion));
    Add(
        QStringLiteral("logged-off"), QStringLiteral("nobody logged on"), [] { TourHand::AnswerBox(true); },
        Shows(Main, Text(AppText::LoggedOff)));
}

void TourScript::LogOn()
{
    Add(
        QStringLiteral("logon"), QStringLiteral("the logon dialog, now that the directory is filled"),
        [this] {
            Demonstration::Fill({m_demonstration.DatabaseFile(), m_demonstration.WorkgroupFile()},
                                Demonstration::Administrator);
            Click("tbMain_session");
        },
        Visible(QStringLiteral("frmLogon")));
    Add(
        QStringLiteral("logon-wrong-password"), QStringLiteral("the failure inside the dialog"),
        [] {
            Type("txtUserName", Demonstration::Operator.user);
            Type("txtPassword", QStringLiteral("guess"));
            Click("cmdOK");
        },
        All({Visible(QStringLiteral("frmLogon")),
             Shows(QStringLiteral("lblMessage"), Text(AppText::WrongPassword))}));
    Add(
        QStringLiteral("logged-on"), QStringLiteral("the own callsign and address in the status bar"),
        [] {
            Type("txtPassword", Demonstration::Operator.password);
            Click("cmdOK");
        },
        All({Shows(QStringLiteral("callsign"), QStringLiteral("Dispatch")),
             Shows(QStringLiteral("ident"), QStringLiteral("200200121"))}));
    Add(
        QStringLiteral("operating-condition"), QStringLiteral("the radio's field strength"),
        [] { Menu("mbRadio", "miOpCon"); }, Contains(QStringLiteral("field"), QStringLiteral("|")));
    Add(
        QStringLiteral("network-information"), QStringLiteral("the channel and the system's identity"),
        [] { Menu("mbRadio", "miNetInfo"); },
        Contains(Main, Text(AppText::NetworkInfo).section(QLatin1Char('#'), 0, 0)));
}

void TourScript::Messages()
{
    Add(
        QStringLiteral("status-sending"), QStringLiteral("the status on its way to a slow radio"),
        [] {
            TourHand::Type(Address, QStringLiteral("Unit25"));
            TourHand::Type(StatusBox, QStringLiteral("03"));
            Click("cmdSend");
        },
        All({Visible(Agent), Contains(QStringLiteral("txtLog"), Text(AppText::SendingWait))}));
    Add(
        QStringLiteral("status-delivered"), QStringLiteral("the status in the log, once it was delivered"),
        [] {}, All({Hidden(Agent), LogShows(QStringLiteral("03 - Proceed to the scene"))}));
    Add(
        QStringLiteral("status-refused"), QStringLiteral("the warning that it was not sent"),
        [] {
            TourHand::Type(Address, QStringLiteral("Unit23"));
            Click("cmdSend");
        },
        Box(AppText::MessageNotSent));
    Add(
        QStringLiteral("text-seven"), QStringLiteral("the 7-bit text in the log"),
        [this] {
            TourHand::AnswerBox(true);
            SelectMessage(QStringLiteral("text"));
            TourHand::Type(Address, QStringLiteral("Unit20"));
            TourHand::Type(TextBox, QStringLiteral("Road closed at the bridge, use the tunnel"));
            Click("cmdSend");
        },
        LogShows(QStringLiteral("Road closed at the bridge")));
    Add(
        QStringLiteral("text-character-refused"),
        QStringLiteral("the character that 7-bit encoding has not got"),
        [] {
            TourHand::Type(TextBox, QStringLiteral("Meet at the café"));
            Click("cmdSend");
        },
        Contains(QStringLiteral("promptBox"), QStringLiteral("é")));
    Add(
        QStringLiteral("text-eight"), QStringLiteral("the 8-bit text in the log"),
        [] {
            TourHand::AnswerBox(true);
            Click("tbSdmOptions_eight");
            Click("cmdSend");
        },
        LogShows(QStringLiteral("Meet at the café")));
    Add(
        QStringLiteral("status-received"), QStringLiteral("the received status in the log"),
        [this] { Radio(QStringLiteral("status Unit27 4")); }, LogShows(QStringLiteral("04 - Arrived")));
    Add(
        QStringLiteral("text-received"), QStringLiteral("the received text in the log"),
        [this] { Radio(QStringLiteral("text Unit20 7 Tunnel is clear, driving on")); },
        LogShows(QStringLiteral("Tunnel is clear, driving on")));
}

void TourScript::OutgoingCalls()
{
    Add(
        QStringLiteral("call-setup"), QStringLiteral("the call dialogue, the other radio ringing"),
        [] {
            Menu("mbMessaging", "miSendCall");
            TourHand::Type(Address, QStringLiteral("Unit22"));
            Click("cmdSend");
        },
        All({Visible(Agent), Contains(QStringLiteral("txtLog"), Text(AppText::CallingWait))}));
    Add(
        QStringLiteral("call-connected"), QStringLiteral("the call connected"), [] {},
        All({Contains(QStringLiteral("txtLog"), Text(AppText::ConnectedTalk)),
             Shows(QStringLiteral("cmdAnswerHungup"), Text(AppText::Hungup))}));
    Add(
        QStringLiteral("push-to-talk"), QStringLiteral("the transmitter keyed"),
        [] { TourHand::Press(QStringLiteral("cmdPTT")); },
        Shows(QStringLiteral("cmdPTT"), Text(AppText::Transmitting)));
    Add(
        QStringLiteral("hang-up"), QStringLiteral("the dialogue closed and the call in the log"),
        [] {
            TourHand::Release(QStringLiteral("cmdPTT"));
            Click("cmdAnswerHungup");
        },
        All({Hidden(Agent), LogShows(Text(AppText::Voice))}));
    Add(
        QStringLiteral("call-pstn"), QStringLiteral("a telephone call connected"),
        [] {
            TourHand::Type(Address, QStringLiteral("01223456789"));
            Click("cmdSend");
        },
        All({Contains(QStringLiteral("txtLog"), Text(AppText::ConnectedTalk)),
             LogShows(Text(AppText::PstnCall))}));
    Add(
        QStringLiteral("call-pstn-ended"), QStringLiteral("the dialogue closed"),
        [] { Click("cmdAnswerHungup"); }, Hidden(Agent));
}

void TourScript::IncomingCalls()
{
    const QString emergency = FormatMessage(m_strings, AppText::EmergencyIn, {Text(AppText::IncomingCall)});
    Add(
        QStringLiteral("call-ringing"), QStringLiteral("an incoming call that rings"),
        [this] { Radio(QStringLiteral("call Unit27 ring")); },
        All({Shows(Agent, Text(AppText::IncomingCall)),
             Shows(QStringLiteral("cmdAnswerHungup"), Text(AppText::Answer))}));
    Add(
        QStringLiteral("call-answered"), QStringLiteral("the call connected"),
        [] { Click("cmdAnswerHungup"); },
        All({Contains(QStringLiteral("txtLog"), Text(AppText::ConnectedTalk)),
             Shows(QStringLiteral("cmdAnswerHungup"), Text(AppText::Hungup))}));
    Add(
        QStringLiteral("call-cleared"), QStringLiteral("the dialogue closed after the far end hung up"),
        [this] { Radio(QStringLiteral("hangup")); }, Hidden(Agent));
    Add(
        QStringLiteral("emergency"), QStringLiteral("the emergency call"),
        [this] { Radio(QStringLiteral("call Unit29 connected emergency")); },
        All({Shows(Agent, emergency), Contains(QStringLiteral("emergencyText"), QStringLiteral("Unit29"))}));
    Add(
        QStringLiteral("emergency-ended"), QStringLiteral("the emergency still in the strip after its end"),
        [] { Click("cmdAnswerHungup"); },
        All({Hidden(Agent), LogShows(emergency),
             Contains(QStringLiteral("emergencyText"), QStringLiteral("Unit29"))}));
    Add(
        QStringLiteral("emergency-seen"), QStringLiteral("the strip without the emergency"),
        [] { Click("cmdDismissEmergency"); }, Hidden(QStringLiteral("emergencyText")));
}

void TourScript::Window()
{
    Add(
        QStringLiteral("hex-view"), QStringLiteral("texts in the log as hexadecimal"),
        [] { Menu("mbView", "miLogDataView"); },
        LogShows(QStringLiteral("52 6F 61 64 20 63 6C 6F 73 65 64")));
    Add(
        QStringLiteral("text-view"), QStringLiteral("texts in the log as text again"),
        [] { Menu("mbView", "miLogDataView"); }, LogShows(QStringLiteral("Road closed at the bridge")));
    Add(
        QStringLiteral("log-cleared"), QStringLiteral("an empty log display"),
        [] { Click("tbRefreshLog_clearlog"); },
        [this] {
            const QString seen = LogShows(QStringLiteral("Road closed"))();
            return seen.isEmpty() ? QStringLiteral("the old lines") : QString();
        });
    Add(
        QStringLiteral("log-reload"), QStringLiteral("the log read back from the database"),
        [] { Click("tbRefreshLog_refresh"); },
        All({LogShows(QStringLiteral("03 - Proceed to the scene")),
             LogShows(QStringLiteral("Meet at the café"))}));
    Add(
        QStringLiteral("full-screen"), QStringLiteral("the main window over the whole screen"),
        [] { Menu("mbView", "miFullscreen"); }, FillsScreen(true));
    Add(
        QStringLiteral("full-screen-left"), QStringLiteral("the main window as it was"),
        [] { Click("tbMain_fullscreen"); }, FillsScreen(false));
}

void TourScript::LogOff()
{
    Add(
        QStringLiteral("password"), QStringLiteral("the password dialog"),
        [] { Menu("mbSystem", "miPassword"); }, Visible(QStringLiteral("frmPassword")));
    Add(
        QStringLiteral("password-changed"), QStringLiteral("the confirmation in the status bar"),
        [] {
            Type("txt_0", Demonstration::Operator.password);
            Type("txt_1", NewPassword);
            Type("txt_2", NewPassword);
            Click("Command2");
        },
        All({Hidden(QStringLiteral("frmPassword")), Shows(Main, Text(AppText::PasswordChanged))}));
    Add(
        QStringLiteral("logout"), QStringLiteral("the question before the logout"),
        [] { Click("tbMain_session"); }, Box(AppText::LogoutQuestion));
    Add(
        QStringLiteral("end"), QStringLiteral("nobody logged on, the operator's commands hidden"),
        [] { TourHand::AnswerBox(true); }, Shows(Main, Text(AppText::LoggedOff)));
}
