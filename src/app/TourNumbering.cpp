// The guided tour's chapters about the numbering: a fleet plan and the ANN parameters, entered, refused and
// dialled.

#include "app/Demonstration.h"
#include "app/TextIds.h"
#include "app/TourGestures.h"
#include "app/TourScript.h"
#include "core/Errors.h"
#include "core/FormatMessage.h"

namespace {

const QString PlanWindow = QStringLiteral("frmFleetPlan");
const QString ParametersWindow = QStringLiteral("frmActionetSettings");
const QString PromptBox = QStringLiteral("promptBox");
const QString MessageBar = QStringLiteral("main");
const QString Doubt = QStringLiteral("numberingText");

void EnterFleet(const QString& name, const QString& prefix, const QString& number, const QString& size)
{
    Type("txtFleetName", name);
    Type("txtPrefix1343", prefix);
    Type("txtFleetNum", number);
    Type("txtFleetSize", size);
}

// A field that keeps an entry from being stored, and what puts it right.
struct RefusedEntry {
    const char* step;
    int textId;
    QStringList values;
    std::function<void()> enter;
};

const RefusedEntry RefusedEntries[] = {
    {"name", AppText::FleetNameMissing, {}, [] { Click("cmdNew"); }},
    {"type", AppText::FleetTypeMissing, {}, [] { Type("txtFleetName", QStringLiteral("City units")); }},
    {"prefix",
     AppText::FleetPrefixInvalid,
     {},
     [] {
         Click("optInd");
         Type("txtPrefix1343", QStringLiteral("199"));
     }},
    {"number",
     AppText::FleetNumberInvalid,
     {},
     [] {
         Type("txtPrefix1343", QStringLiteral("201"));
         Type("txtFleetNum", QStringLiteral("2000"));
     }},
    {"size",
     AppText::FleetSizeInvalid,
     {},
     [] {
         Type("txtFleetNum", QStringLiteral("2510"));
         Type("txtFleetSize", QStringLiteral("71"));
     }},
    {"digits", AppText::FleetDigitsMissing, {}, [] { Type("txtFleetSize", QStringLiteral("70")); }},
    {"taken",
     AppText::FleetNameTaken,
     {QStringLiteral("City units")},
     [] { TourHand::Choose(QStringLiteral("cmbDigits"), QStringLiteral("2")); }},
    {"end",
     AppText::FleetEndsTooHigh,
     {QStringLiteral("201"), QStringLiteral("6049")},
     [] {
         EnterFleet(QStringLiteral("Harbour units"), QStringLiteral("201"), QStringLiteral("6049"),
                    QStringLiteral("70"));
     }},
    {"overlap",
     AppText::FleetsOverlap,
     {QStringLiteral("200"), QStringLiteral("2002"), QStringLiteral("200"), QStringLiteral("2001")},
     [] {
         Type("txtPrefix1343", QStringLiteral("200"));
         Type("txtFleetNum", QStringLiteral("2002"));
     }},
};

} // namespace

void TourScript::LogOnAdministrator(const QString& name, const QString& expected, Look look)
{
    Add(
        name, QStringLiteral("the logon dialog"), [] { Click("tbMain_session"); },
        Visible(QStringLiteral("frmLogon")));
    Add(
        name + QStringLiteral("-done"), expected,
        [] {
            Type("txtUserName", Demonstration::Administrator.user);
            Type("txtPassword", Demonstration::Administrator.password);
            Click("cmdOK");
        },
        std::move(look));
}

void TourScript::LogOffAdministrator(const QString& name)
{
    Add(
        name, QStringLiteral("the question before the logout"), [] { Click("tbMain_session"); },
        Box(AppText::LogoutQuestion));
    Add(
        name + QStringLiteral("-done"), QStringLiteral("nobody logged on"), [] { TourHand::AnswerBox(true); },
        Shows(MessageBar, Text(AppText::LoggedOff)));
}

void TourScript::ChooseNumbering(const QString& code)
{
    const QString name = QStringLiteral("numbering-") + code.toLower();
    Add(
        name, QStringLiteral("the choice of the numbering"), [] { Menu("mbAdmin", "miSelectNumbering"); },
        Visible(QStringLiteral("frmSelectNumbering")));
    Add(
        name + QStringLiteral("-question"), QStringLiteral("the question before it is changed"),
        [code] {
            TourHand::Click(QStringLiteral("optSubNum") + code);
            Click("cmdSet");
        },
        Box(AppText::NumberingQuestion));
    Add(
        name + QStringLiteral("-set"), QStringLiteral("the hint to log on again"),
        [] { TourHand::AnswerBox(true); }, Box(AppText::LogonAgain));
}

// A status to the same radio each time, whatever is dialled for it.
void TourScript::DialUnit20(const QString& name, const QString& dial, int status)
{
    const QString code = QStringLiteral("%1").arg(status, 2, 10, QLatin1Char('0'));
    Add(
        name, QStringLiteral("the status to %1 at the radio 0/2 and in the log").arg(dial),
        [this, dial, code] {
            SelectMessage(QStringLiteral("status"));
            Type("cmbAddress", dial);
            Type("cmbStatusMessage", code);
            Click("cmdSend");
        },
        All({LogShows(QStringLiteral("[%1] %2").arg(dial, code)), [this, status] {
                 const QString last = m_demonstration.TellRadio(QStringLiteral("last"));
                 const QString expected = QStringLiteral("ok status %1 to Unit20 (0/2)").arg(status);
                 return last == expected ? QString() : last;
             }}));
}

void TourScript::FleetPlan()
{
    LogOnAdministrator(QStringLiteral("administrator-logon"),
                       QStringLiteral("the administrator's own address"),
                       Shows(QStringLiteral("ident"), QStringLiteral("200200121")));
    ChooseNumbering(QStringLiteral("MPT1343"));
    Add(
        QStringLiteral("fleet-plan"), QStringLiteral("the fleet plan"),
        [] {
            TourHand::AnswerBox(true);
            Menu("mbAdmin", "miNumbering");
        },
        Visible(PlanWindow));
    FleetPlanRefusals();
    FleetPlanEntries();
    LogOffAdministrator(QStringLiteral("fleet-plan-logout"));
    // The network information is the last that the console asks the radio for by itself.
    LogOnAdministrator(QStringLiteral("fleet-plan-logon"), QStringLiteral("the radio's network"),
                       Contains(MessageBar, Text(AppText::NetworkInfo).section(QLatin1Char('#'), 0, 0)));
    DialUnit20(QStringLiteral("dial-short"), QStringLiteral("20"), 3);
    DialUnit20(QStringLiteral("dial-medium"), QStringLiteral("200120"), 4);
    DialUnit20(QStringLiteral("dial-full"), QStringLiteral("200200120"), 5);
}

void TourScript::FleetPlanRefusals()
{
    bool boxOpen = false;
    for (const RefusedEntry& refused : RefusedEntries) {
        const QString text = FormatMessage(m_strings, refused.textId, refused.values);
        Add(
            QStringLiteral("fleet-refused-") + QLatin1String(refused.step), text,
            [enter = refused.enter, boxOpen] {
                if (boxOpen)
                    TourHand::AnswerBox(true);
                enter();
                Click("cmdSave");
            },
            Shows(PromptBox, text));
        boxOpen = true;
    }
}

void TourScript::FleetPlanEntries()
{
    Add(
        QStringLiteral("fleet-saved"), QStringLiteral("the new fleet, selected"),
        [] {
            TourHand::AnswerBox(true);
            Type("txtPrefix1343", QStringLiteral("201"));
            Type("txtFleetNum", QStringLiteral("2510"));
            Click("cmdSave");
        },
        All({Hidden(PromptBox), Shows(QStringLiteral("txtFleetName"), QStringLiteral("Harbour units")),
             Shows(QStringLiteral("txtMaxIdent"), QStringLiteral("1089"))}));
    Add(
        QStringLiteral("fleet-delete"), QStringLiteral("the question before a fleet is deleted"),
        [] {
            TourHand::Choose(QStringLiteral("lstPlan"), QStringLiteral("City groups"));
            Click("cmdDelete");
        },
        All({Shows(QStringLiteral("txtFleetNum"), QStringLiteral("5500")),
             Box(AppText::FleetDeleteQuestion)}));
    Add(
        QStringLiteral("fleet-from-radio"),
        QStringLiteral("the radio's group fleet, its size to be found out"),
        [] {
            TourHand::AnswerBox(true);
            Click("cmdAskGrpNumbering");
        },
        All({Box(AppText::FindOutSize),
             Contains(QStringLiteral("txtFleetName"), QStringLiteral("2005500"))}));
    Add(
        QStringLiteral("fleet-from-radio-saved"), QStringLiteral("the radio's group fleet in the plan"),
        [] {
            TourHand::AnswerBox(true);
            Type("txtFleetSize", QStringLiteral("10"));
            Click("cmdSave");
        },
        All({Hidden(PromptBox), Shows(QStringLiteral("txtMaxIdent"), QStringLiteral("7009"))}));
    Add(
        QStringLiteral("fleet-plan-closed"), QStringLiteral("the main window"), [] { Click("cmdClose"); },
        All({Hidden(PlanWindow), Hidden(PromptBox)}));
    Add(
        QStringLiteral("numbering-diagnostics"), QStringLiteral("the numbering that the radio reports"),
        [] { Menu("mbRadio", "miNumberingDiag"); },
        Contains(QStringLiteral("txtDiags"), QStringLiteral("IMAXIDENT=71")));
    Add(
        QStringLiteral("numbering-diagnostics-hidden"), QStringLiteral("the main window"),
        [] { Click("cmdHide"); }, Hidden(QStringLiteral("txtDiags")));
}

void TourScript::AnnParameters()
{
    ChooseNumbering(QStringLiteral("ACTIONET"));
    Add(
        QStringLiteral("ann-chosen"), QStringLiteral("the main window"), [] { TourHand::AnswerBox(true); },
        Hidden(PromptBox));
    LogOffAdministrator(QStringLiteral("ann-logout"));
    LogOnAdministrator(QStringLiteral("ann-logon"),
                       QStringLiteral("the hint that the numbering is not configured"),
                       Box(AppText::NumberingNotConfigured));
    Add(
        QStringLiteral("ann-not-configured"), QStringLiteral("the own address in its raw form"),
        [] { TourHand::AnswerBox(true); }, Shows(QStringLiteral("ident"), QStringLiteral("/0000003")));
    Add(
        QStringLiteral("ann-parameters"), QStringLiteral("the ANN parameters"),
        [] { Menu("mbAdmin", "miNumbering"); }, Visible(ParametersWindow));
    Add(
        QStringLiteral("ann-refused-model"), QStringLiteral("the hint that a model is missing"),
        [] { Click("cmdSave"); }, Box(AppText::ModelMissing));
    Add(
        QStringLiteral("ann-entered"), QStringLiteral("a hundred small fleets"),
        [this] {
            TourHand::AnswerBox(true);
            TourHand::Choose(QStringLiteral("cmbModel"), Text(AppText::ModelExtraLarge));
            TourHand::Key(QStringLiteral("sldFPP"), Qt::Key_Home);
        },
        All({Shows(QStringLiteral("cmbModel"), Text(AppText::ModelExtraLarge)),
             Shows(QStringLiteral("lblFPPVal"), QStringLiteral("0")),
             Contains(QStringLiteral("txtStat"), QStringLiteral("100"))}));
    Add(
        QStringLiteral("ann-contradiction"), QStringLiteral("the strip: the radio reports another fleet"),
        [] { Click("cmdSave"); },
        All({Hidden(ParametersWindow), Shows(QStringLiteral("ident"), QStringLiteral("0000022")),
             Contains(Doubt, QStringLiteral("2..71"))}));
    Add(
        QStringLiteral("ann-diagnostics"), QStringLiteral("the contradiction beside the radio's report"),
        [] { Menu("mbRadio", "miNumberingDiag"); },
        Contains(QStringLiteral("lblDoubts"), QStringLiteral("2..71")));
    Add(
        QStringLiteral("ann-radio-fits"), QStringLiteral("no contradiction any more"),
        [this] {
            Click("cmdHide");
            Radio(QStringLiteral("numbering 0/3 units 1 70 2 groups 71 80 2"));
        },
        Hidden(Doubt));
    DialUnit20(QStringLiteral("ann-dial-short"), QStringLiteral("21"), 6);
    DialUnit20(QStringLiteral("ann-dial-medium"), QStringLiteral("0021"), 7);
    DialUnit20(QStringLiteral("ann-dial-full"), QStringLiteral("0000021"), 8);
}
