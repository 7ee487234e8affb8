// The chapters of the guided tour about duty status, talkgroups and regrouping.

#include "app/Demonstration.h"
#include "app/TextIds.h"
#include "app/TourGestures.h"
#include "app/TourItems.h"
#include "app/TourScript.h"
#include "mainwindow/Outcome.h"
#include "mainwindow/TalkgroupModel.h"

namespace {

const QString Agent = QStringLiteral("frmMap27Agent");
const QString Tree = QStringLiteral("tvGroups");
const QString Individuals = QStringLiteral("lvIndividuals");
const QString Wait = QStringLiteral("txtLog");

void NextTab()
{
    TourHand::Key(QStringLiteral("cmbAddress"), Qt::Key_Tab, Qt::ControlModifier);
}

void PreviousTab()
{
    TourHand::Key(QStringLiteral("cmbAddress"), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
}

} // namespace

TourScript::Look TourScript::Node(const QString& node, const char* picture, Outcome outcome)
{
    return [=] {
        if (!TourItems::IsThere(Tree, node))
            return QStringLiteral("no node ") + node;
        const QString seen = TourItems::Value(Tree, node, TalkgroupModel::PictureRole);
        const QString sign = TourItems::Value(Tree, node, OutcomeRole);
        const bool same = seen == QLatin1String(picture) && sign.toInt() == static_cast<int>(outcome);
        return same ? QString() : QStringLiteral("%1 with picture %2, outcome %3").arg(node, seen, sign);
    };
}

TourScript::Look TourScript::Listed(const QString& view, const QString& item, bool there)
{
    return [=] {
        const bool seen = TourItems::IsThere(view, item);
        return seen == there ? QString() : item + QLatin1String(seen ? " is there" : " is not there");
    };
}

void TourScript::DutyStatus()
{
    Add(
        QStringLiteral("duty-nobody"), QStringLiteral("a list without the radios that are off duty"),
        [] { NextTab(); }, All({Visible(Individuals), Listed(Individuals, QStringLiteral("Unit22"), false)}));
    Add(
        QStringLiteral("duty-on"), QStringLiteral("the radios that came on duty in the list"),
        [this] {
            Radio(QStringLiteral("status Unit20 1"));
            Radio(QStringLiteral("status Unit22 1"));
            Radio(QStringLiteral("status Unit27 1"));
        },
        All({Listed(Individuals, QStringLiteral("Unit20"), true),
             Listed(Individuals, QStringLiteral("Unit22"), true),
             Listed(Individuals, QStringLiteral("Unit27"), true)}));
    Add(
        QStringLiteral("duty-off"), QStringLiteral("a radio gone from the list, the chosen one still chosen"),
        [this] {
            TourItems::Click(Individuals, QStringLiteral("Unit20"));
            Radio(QStringLiteral("status Unit27 2"));
        },
        All({Listed(Individuals, QStringLiteral("Unit27"), false),
             Shows(QStringLiteral("cmbAddress"), QStringLiteral("Unit20"))}));
}

void TourScript::Regroup()
{
    Add(
        QStringLiteral("regroup-no-default"), QStringLiteral("the hint to choose a default group first"),
        [] { Click("tbMain_regroup"); }, Box(AppText::NoDefaultGroup));
    Add(
        QStringLiteral("regroup-no-default-seen"), QStringLiteral("the talkgroups to choose from"),
        [] { TourHand::AnswerBox(true); }, Visible(Tree));
    Add(
        QStringLiteral("default-group"), QStringLiteral("Group91 marked as the default group"),
        [] {
            TourItems::Click(Tree, QStringLiteral("Group91"));
            TourHand::Menu(QStringLiteral("mbDynReg"), QStringLiteral("miDefDynamic"));
        },
        Node(QStringLiteral("Group91"), TalkgroupModel::DefaultGroupPicture));
    for (const char* callsign : {"Unit20", "Unit22"}) {
        const QString unit = QLatin1String(callsign);
        Add(
            QStringLiteral("regroup-by-command-") + unit,
            unit + QStringLiteral(" in Group91, marked as done"),
            [unit] {
                NextTab();
                TourItems::Click(Individuals, unit);
                Click("tbMain_regroup");
                PreviousTab();
            },
            All({Hidden(Agent),
                 Node(QStringLiteral("Group91/") + unit, TalkgroupModel::MemberPicture, Outcome::Done)}));
    }
    Add(
        QStringLiteral("regroup-dragging"), QStringLiteral("the target highlighted under the pointer"),
        [] { TourItems::Drag(Tree, QStringLiteral("Group91/Unit20"), QStringLiteral("Group92"), false); },
        Node(QStringLiteral("Group91/Unit20"), TalkgroupModel::MemberPicture));
    Add(
        QStringLiteral("regroup-pending"), QStringLiteral("the dragged radio waiting for the answer"),
        [this] {
            TourHand::Key(Tree, Qt::Key_Escape);
            Radio(QStringLiteral("behave Unit20 regroup busy 300 1500"));
            TourItems::Drag(Tree, QStringLiteral("Group91/Unit20"), QStringLiteral("Group92"));
        },
        All({Contains(Wait, Text(AppText::RegroupingWait)),
             Node(QStringLiteral("Group91/Unit20"), TalkgroupModel::PendingPicture)}));
    Add(
        QStringLiteral("regroup-by-drag"), QStringLiteral("the radio in Group92, too, marked as done"), [] {},
        All({Hidden(Agent),
             Node(QStringLiteral("Group92/Unit20"), TalkgroupModel::MemberPicture, Outcome::Done)}));
}

void TourScript::RegroupNotDone()
{
    const QString member = QStringLiteral("Group91/Unit22");
    const auto drag = [this, member](const char* behaviour) {
        Radio(QStringLiteral("behave Unit22 regroup ") + QLatin1String(behaviour));
        TourItems::Drag(Tree, member, QStringLiteral("Group92"));
    };
    const Look where = Node(member, TalkgroupModel::MemberPicture, Outcome::NotDone);
    const Look notThere = Listed(Tree, QStringLiteral("Group92/Unit22"), false);
    Add(
        QStringLiteral("regroup-refused"), QStringLiteral("the warning, the radio where it was"),
        [drag] { drag("refuses 300 600"); }, All({Box(AppText::RegroupingFailed), where, notThere}));
    Add(
        QStringLiteral("regroup-refused-seen"), QStringLiteral("the radio marked as not regrouped"),
        [] { TourHand::AnswerBox(true); }, All({where, notThere}));
    Add(
        QStringLiteral("regroup-silent"), QStringLiteral("a command that nobody answers"),
        [drag] { drag("silent"); }, All({Visible(Agent), Node(member, TalkgroupModel::PendingPicture)}));
    Add(
        QStringLiteral("regroup-cancelled"), QStringLiteral("the radio where it was"),
        [] { Click("cmdAnswerHungup"); }, All({Hidden(Agent), where, notThere}));
}

void TourScript::NamesAndUngroup()
{
    Add(
        QStringLiteral("group-name"), QStringLiteral("the radio with the group's name in its memory"),
        [] {
            TourItems::Click(Tree, QStringLiteral("Group91/Unit20"));
            Click("tbMain_sendname");
        },
        All({Hidden(Agent), [this] {
                 const QString seen = m_demonstration.TellRadio(QStringLiteral("groups Unit20"));
                 return seen.contains(QLatin1String("\"Group91\"")) ? QString() : seen;
             }}));
    Add(
        QStringLiteral("ungroup-member"), QStringLiteral("the radio out of Group92"),
        [] {
            TourItems::Click(Tree, QStringLiteral("Group92/Unit20"));
            Click("tbMain_ungroup");
        },
        All({Hidden(Agent), Listed(Tree, QStringLiteral("Group92/Unit20"), false),
             Node(QStringLiteral("Group92"), "", Outcome::Done)}));
    Add(
        QStringLiteral("ungroup-group"), QStringLiteral("Group91 without radios, still the default group"),
        [] {
            TourItems::Click(Tree, QStringLiteral("Group91"));
            TourHand::Menu(QStringLiteral("mbDynReg"), QStringLiteral("miUngroup"));
        },
        All({Hidden(Agent), Listed(Tree, QStringLiteral("Group91/Unit20"), false),
             Node(QStringLiteral("Group91"), TalkgroupModel::DefaultGroupPicture, Outcome::Done)}));
}
