// The guided tour's chapters about directory, status messages, accounts and the guide.

#include "app/Demonstration.h"
#include "app/TextIds.h"
#include "app/TourGestures.h"
#include "app/TourScript.h"
#include "core/FormatMessage.h"
#include "dao/Workspace.h"

#include <QAbstractItemView>
#include <QRegularExpression>
#include <QTextEdit>

namespace {

const QString Directory = QStringLiteral("lvDir");
const QString Editor = QStringLiteral("frmAddressEditor");
const QString Stati = QStringLiteral("lvStati");
const QString Users = QStringLiteral("lvUsers");
const QString UserStatus = QStringLiteral("sbStatus");
const QString PromptBox = QStringLiteral("promptBox");
const QString NewUser = QStringLiteral("Paula");

QStringList Lines(const QString& list)
{
    QStringList lines;
    const auto* view = qobject_cast<QAbstractItemView*>(TourHand::Find(list));
    for (int row = 0; view && row < view->model()->rowCount(); ++row) {
        QStringList columns;
        for (int column = 0; column < view->model()->columnCount(); ++column)
            columns.append(view->model()->index(row, column).data().toString());
        lines.append(columns.join(QLatin1Char(' ')));
    }
    return lines;
}

std::function<QString()> Lists(const QString& list, const QString& line, bool listed = true)
{
    return [=] {
        const QStringList lines = Lines(list);
        const bool found =
            lines.indexOf(QRegularExpression(QRegularExpression::escape(line) + ".*",
                                             QRegularExpression::DotMatchesEverythingOption)) >= 0;
        return found == listed
                   ? QString()
                   : QStringLiteral("%1 lines: %2").arg(lines.size()).arg(lines.join(QStringLiteral(", ")));
    };
}

std::function<QString()> GuideShows(const QString& heading)
{
    return [heading] {
        const auto* text = qobject_cast<QTextEdit*>(TourHand::Find(QStringLiteral("txtHelp")));
        const QString seen =
            text && text->isVisible() ? text->toPlainText().section(QLatin1Char('\n'), 0, 0) : QString();
        return seen == heading ? QString() : QStringLiteral("the page \"%1\"").arg(seen);
    };
}

// What happens at another console meanwhile.
std::unique_ptr<dao::Workspace> AnotherConsole(const Demonstration& demonstration)
{
    return dao::OpenWorkspace({demonstration.DatabaseFile(), demonstration.WorkgroupFile()},
                              Demonstration::Administrator.user, Demonstration::Administrator.password);
}

qlonglong IdOf(dao::Database& database, const QString& callsign)
{
    const auto rows = database.OpenTable(QStringLiteral("address"));
    rows->SetIndex(QStringLiteral("i_callsign"));
    rows->Seek(callsign);
    return rows->Field(QStringLiteral("address_id")).toLongLong();
}

} // namespace

void TourScript::Administration()
{
    LogOnAdministrator(QStringLiteral("admin-logon"), QStringLiteral("the Admin menu's owner logged on"),
                       Shows(QStringLiteral("callsign"), QStringLiteral("Dispatch")));
    DirectoryEntries();
    DirectoryProtection();
    StatusMessages();
    Accounts();
    AccountChanges();
    Guide();
    LogOffAdministrator(QStringLiteral("admin-logout"));
}

void TourScript::DirectoryEntries()
{
    Add(
        QStringLiteral("directory"), QStringLiteral("the address directory, by callsign"),
        [] { Menu("mbAdmin", "miAddressDir"); }, Lists(Directory, QStringLiteral("Unit20 200200120")));
    Add(
        QStringLiteral("directory-add"), QStringLiteral("the editor for a new individual"),
        [] { Click("Command1"); }, Visible(Editor));
    Add(
        QStringLiteral("directory-refused"), QStringLiteral("the rule for callsigns"),
        [] {
            Type("txtCallsign", QStringLiteral("81 Unit"));
            Type("txtIdent", QStringLiteral("200200181"));
            Type("txtName", QStringLiteral("Harbour Patrol"));
            Click("cmdUpdate");
        },
        Box(AppText::CallsignRule));
    Add(
        QStringLiteral("directory-added"), QStringLiteral("the new entry in the list"),
        [] {
            TourHand::AnswerBox(true);
            Type("txtCallsign", QStringLiteral("Unit81"));
            Click("cmdUpdate");
        },
        All({Hidden(Editor), Lists(Directory, QStringLiteral("Unit81 200200181"))}));
    Add(
        QStringLiteral("directory-edit"), QStringLiteral("the entry in the editor"),
        [] {
            TourHand::Choose(Directory, QStringLiteral("Unit81"));
            Click("cmdEdit");
        },
        Shows(QStringLiteral("txtName"), QStringLiteral("Harbour Patrol")));
    Add(
        QStringLiteral("directory-edited"), QStringLiteral("the entry under its new callsign"),
        [] {
            Type("txtCallsign", QStringLiteral("Unit82"));
            Type("txtNote", QStringLiteral("day shift only"));
            Click("cmdUpdate");
        },
        All({Hidden(Editor), Lists(Directory, QStringLiteral("Unit82 200200181"))}));
    Add(
        QStringLiteral("directory-delete"), QStringLiteral("the question before an entry is deleted"),
        [] {
            TourHand::Choose(Directory, QStringLiteral("Unit82"));
            Click("Command4");
        },
        Contains(PromptBox, QStringLiteral("Unit82")));
    Add(
        QStringLiteral("directory-deleted"), QStringLiteral("the list without the entry"),
        [] { TourHand::AnswerBox(true); }, Lists(Directory, QStringLiteral("Unit82"), false));
}

void TourScript::DirectoryProtection()
{
    const QString protectedText =
        FormatMessage(m_strings, AppText::AddressInRegroup, {QStringLiteral("Unit20")});
    Add(
        QStringLiteral("directory-regrouped"),
        QStringLiteral("the question about an entry that was regrouped"),
        [this] {
            const auto workspace = AnotherConsole(m_demonstration);
            const auto rows = workspace->Database().OpenTable(QStringLiteral("dynamic_regroup"));
            rows->AddNew();
            rows->SetField(QStringLiteral("group_id"),
                           IdOf(workspace->Database(), QStringLiteral("Group91")));
            rows->SetField(QStringLiteral("member_id"),
                           IdOf(workspace->Database(), QStringLiteral("Unit20")));
            rows->SetField(QStringLiteral("pos"), 2);
            rows->Update();
            TourHand::Choose(Directory, QStringLiteral("Unit20"));
            Click("Command4");
        },
        Contains(PromptBox, QStringLiteral("Unit20")));
    Add(
        QStringLiteral("directory-protected"), QStringLiteral("the warning that it cannot be deleted"),
        [] { TourHand::AnswerBox(true); }, Shows(PromptBox, protectedText));
    Add(
        QStringLiteral("directory-locked"), QStringLiteral("its callsign and address locked in the editor"),
        [] {
            TourHand::AnswerBox(true);
            TourHand::Key(Directory, Qt::Key_Return);
        },
        All({Visible(Editor), [] {
                 const QWidget* callsign = TourHand::Find(QStringLiteral("txtCallsign"));
                 return callsign && !callsign->isEnabled() ? QString() : QStringLiteral("the callsign open");
             }}));
    Add(
        QStringLiteral("directory-searched"), QStringLiteral("the entries that match"),
        [this] {
            Click("Command2"); // of the editor, which lies on top
            const auto workspace = AnotherConsole(m_demonstration);
            const auto query = workspace->Database().QueryDef(QStringLiteral("ind_ungroup"));
            query->SetParameter(QStringLiteral("mi"), IdOf(workspace->Database(), QStringLiteral("Unit20")));
            query->SetParameter(QStringLiteral("p"), 2);
            query->Execute();
            Type("txtLookFor", QStringLiteral("group9?"));
            TourHand::Key(QStringLiteral("txtLookFor"), Qt::Key_Return);
        },
        All({Lists(Directory, QStringLiteral("Group91")),
             Lists(Directory, QStringLiteral("Unit20"), false)}));
    Add(
        QStringLiteral("guide-of-the-window"), QStringLiteral("the guide's page about the directory"),
        [] { TourHand::Key(Directory, Qt::Key_F1); }, GuideShows(QStringLiteral("The address directory")));
    Add(
        QStringLiteral("directory-closed"), QStringLiteral("the main window with its lists read again"),
        [] {
            TourHand::Key(QStringLiteral("txtHelp"), Qt::Key_Escape);
            Click("cmdClose");
        },
        Hidden(Directory));
}

void TourScript::StatusMessages()
{
    Add(
        QStringLiteral("statuses"), QStringLiteral("the status messages"),
        [] { Menu("mbAdmin", "miEditStati"); }, Lists(Stati, QStringLiteral("4 Arrived")));
    Add(
        QStringLiteral("status-set"), QStringLiteral("a new message in the list"),
        [] {
            TourHand::Choose(QStringLiteral("cmbEditStatus"), QStringLiteral("19"));
            Type("txtEditInDesc", QStringLiteral("Refuelling"));
            Type("txtEditOutDesc", QStringLiteral("Refuel now"));
            Click("Command3");
        },
        Lists(Stati, QStringLiteral("19 Refuelling Refuel now")));
    Add(
        QStringLiteral("duty-codes-refused"), QStringLiteral("the warning that the duty codes must differ"),
        [] {
            TourHand::Choose(QStringLiteral("cmbOnDuty"), QStringLiteral("7"));
            TourHand::Choose(QStringLiteral("cmbOffDuty"), QStringLiteral("7"));
            Click("cmdApplyDuty");
        },
        Box(AppText::DutyCodesMustDiffer));
    Add(
        QStringLiteral("duty-codes-applied"), QStringLiteral("the duty codes as they were, stored again"),
        [] {
            TourHand::AnswerBox(true);
            for (const auto& [box, code] : {std::pair("cmbOnDuty", 1), std::pair("cmbOffDuty", 2)}) {
                TourHand::Key(QString::fromLatin1(box), Qt::Key_Home);
                for (int step = 0; step < code; ++step)
                    TourHand::Key(QString::fromLatin1(box), Qt::Key_Down);
            }
            Click("cmdApplyDuty");
        },
        All({Hidden(PromptBox), Shows(QStringLiteral("cmbOffDuty"), QStringLiteral("2"))}));
    Add(
        QStringLiteral("status-delete"), QStringLiteral("the question before a message is deleted"),
        [] {
            TourHand::Choose(Stati, QStringLiteral("19"));
            Click("Command5");
        },
        Box(AppText::DeleteStatusQuestion));
    Add(
        QStringLiteral("status-deleted"), QStringLiteral("the list without the message"),
        [] { TourHand::AnswerBox(true); }, Lists(Stati, QStringLiteral("19"), false));
    Add(
        QStringLiteral("statuses-closed"), QStringLiteral("the main window"), [] { Click("Command2"); },
        Hidden(Stati));
}

void TourScript::Accounts()
{
    Add(
        QStringLiteral("users"), QStringLiteral("the operators' accounts"),
        [] { Menu("mbAdmin", "miUserManager"); }, Lists(Users, Demonstration::Operator.user));
    Add(
        QStringLiteral("user-new"), QStringLiteral("the fields of a new account"), [] { Click("cmdNew"); },
        Visible(QStringLiteral("picUserDetails")));
    Add(
        QStringLiteral("user-refused"), QStringLiteral("the warning that the passwords differ"),
        [] {
            Type("txtUserName", NewUser);
            Type("txtPass_0", QStringLiteral("paula-demo"));
            Type("txtPass_1", QStringLiteral("paula-typo"));
            Type("txtCallsign", QStringLiteral("Control 2"));
            TourHand::Choose(QStringLiteral("cmbGroup"), QStringLiteral("O"));
            Click("cmdAddUser");
        },
        Box(AppText::PasswordsDiffer));
    Add(
        QStringLiteral("user-added"), QStringLiteral("the new account in the list"),
        [] {
            TourHand::AnswerBox(true);
            Type("txtPass_1", QStringLiteral("paula-demo"));
            Click("cmdAddUser");
        },
        All({Shows(UserStatus, Text(AppText::UserAdded)), Lists(Users, NewUser)}));
}

void TourScript::AccountChanges()
{
    Add(
        QStringLiteral("user-modified"), QStringLiteral("the account's new callsign"),
        [] {
            TourHand::Choose(Users, NewUser);
            Click("cmdModify");
            Type("txtCallsign", QStringLiteral("Control 3"));
            Click("chkAllowDR");
            Click("cmdApply");
        },
        All({Shows(UserStatus, Text(AppText::UserUpdated)),
             Lists(Users, NewUser + QStringLiteral(" Control 3"))}));
    Add(
        QStringLiteral("user-reset"), QStringLiteral("the question before the password is reset"),
        [] {
            TourHand::Choose(Users, NewUser);
            Click("cmdModify");
            Click("cmdResetPassword");
        },
        Box(AppText::ResetPasswordQuestion));
    Add(
        QStringLiteral("user-reset-done"), QStringLiteral("the password reset"),
        [] { TourHand::AnswerBox(true); }, Box(AppText::PasswordReset));
    Add(
        QStringLiteral("user-reset-told"), QStringLiteral("the same in the window's status bar"),
        [] { TourHand::AnswerBox(true); }, Shows(UserStatus, Text(AppText::PasswordReset)));
    Add(
        QStringLiteral("user-unlog"), QStringLiteral("the question before somebody is marked as logged off"),
        [this] {
            Click("cmdCancelUser");
            const auto workspace = AnotherConsole(m_demonstration);
            const auto rows = workspace->Database().OpenTable(QStringLiteral("user_profile"));
            rows->SetIndex(QStringLiteral("i_user"));
            rows->Seek(NewUser);
            rows->Edit();
            rows->SetField(QStringLiteral("logged_on"), true); // her console ended without logging off
            rows->Update();
            Click("cmdFind");
            TourHand::Choose(Users, NewUser);
            Click("cmdUnlog");
        },
        Box(AppText::UnlogQuestion));
    Add(
        QStringLiteral("user-unlogged"), QStringLiteral("the account marked as logged off"),
        [] { TourHand::AnswerBox(true); }, Shows(UserStatus, Text(AppText::UserUnlogged)));
    Add(
        QStringLiteral("user-delete"), QStringLiteral("the question before an account is deleted"),
        [] { Click("cmdDel"); }, Box(AppText::DeleteUserQuestion));
    Add(
        QStringLiteral("user-deleted"), QStringLiteral("the list without the account"),
        [] { TourHand::AnswerBox(true); },
        All({Shows(UserStatus, Text(AppText::UserDeleted)), Lists(Users, NewUser, false)}));
    Add(
        QStringLiteral("users-closed"), QStringLiteral("the main window"),
        [] { TourHand::Key(Users, Qt::Key_Escape); }, Hidden(Users));
}

void TourScript::Guide()
{
    Add(
        QStringLiteral("guide"), QStringLiteral("the user guide at its contents"),
        [] { Menu("mbHelp", "miHelpTopix"); }, GuideShows(QStringLiteral("VeltorKyn user guide")));
    Add(
        QStringLiteral("about"), QStringLiteral("the about box"),
        [] {
            TourHand::Key(QStringLiteral("txtHelp"), Qt::Key_Escape);
            Menu("mbHelp", "miAbout");
        },
        All({Hidden(QStringLiteral("txtHelp")), Visible(QStringLiteral("frmAbout"))}));
    Add(
        QStringLiteral("about-closed"), QStringLiteral("the main window"), [] { Click("cmdOK"); },
        Hidden(QStringLiteral("frmAbout")));
}
