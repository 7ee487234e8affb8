#include "mainwindow/talkgroups/GroupsPane.h"

#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "core/widgets/ListHelpers.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/ListGestures.h"
#include "mainwindow/lists/ListNotice.h"
#include "mainwindow/lists/OutcomeDelegate.h"
#include "mainwindow/lists/PaneCover.h"
#include "mainwindow/lists/WaitingMark.h"
#include "mainwindow/talkgroups/TalkgroupModel.h"
#include "mainwindow/talkgroups/TalkgroupTree.h"
#include "mainwindow/talkgroups/TreePlace.h"

#include <QLabel>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <utility>

GroupsPane::GroupsPane(const TalkgroupServices& services, const SessionState& session, QWidget* parent)
    : QWidget(parent),
      m_services(services),
      m_session(session),
      m_model(new TalkgroupModel(services.strings, this)),
      m_loader(services, *m_model),
      m_commands(services, *m_model),
      m_cover(NewPaneCover(services.strings, this)),
      m_notice(new ListNotice(QStringLiteral("groupsNotice"), this))
{
    setObjectName(QStringLiteral("picGroups"));
    BuildTree();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(tvGroups, 1);
    layout->addWidget(m_cover, 1);
    layout->addWidget(m_notice);
    LoadRootCaptions();
    FollowRecords(*m_model, services.eventLog, m_markDue);
    // From the event loop: when nobody waits for the database, it comes before the change is shown.
    connect(
        &services.eventLog, &EventLog::Refused, this,
        [this](const QString& record) { m_commands.TakeBack(record); }, Qt::QueuedConnection);
}

void GroupsPane::BuildTree()
{
    tvGroups = new TalkgroupTree(this);
    tvGroups->setObjectName(QStringLiteral("tvGroups"));
    tvGroups->setProperty("accessibleNameId", MainText::TalkgroupsTab);
    tvGroups->setIconSize(IconSize(*this));
    tvGroups->setModel(m_model);
    tvGroups->setItemDelegate(new OutcomeDelegate(tvGroups));

    connect(tvGroups->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &GroupsPane::TellSelection);
    // A key selects an item before it makes it current.
    connect(tvGroups->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        if (!m_changedByProgram)
            TellChosen();
    });
    connect(tvGroups, &TalkgroupTree::clicked, this, &GroupsPane::TellChosen);
    connect(tvGroups, &TalkgroupTree::MemberDropped, this,
            [this](const QString& member, const QString& group) { m_commands.Drop(member, group); });
    auto* gestures = new ListGestures(*tvGroups, ListGestures::DoubleClick::Unfolds);
    connect(gestures, &ListGestures::Chosen, this, &GroupsPane::TellChosen);
    connect(gestures, &ListGestures::CallRequested, this, &GroupsPane::CallRequested);
    connect(gestures, &ListGestures::ReloadRequested, this, [this] { ReloadGrps(); });
    connect(gestures, &ListGestures::MenuRequested, this, &GroupsPane::MenuRequested);
}

void GroupsPane::Cover(bool on)
{
    tvGroups->setVisible(!on);
    m_cover->setVisible(on);
}

void GroupsPane::LoadRootCaptions()
{
    m_model->SetRootCaptions(m_services.strings.LoadString(MainText::StaticRoot),
                             m_services.strings.LoadString(MainText::DynamicRoot));
}

void GroupsPane::SetMayDrag(const std::function<bool()>& mayDrag)
{
    tvGroups->mayDrag = mayDrag;
}

QModelIndex GroupsPane::SelectedNode() const
{
    return GetSelectedItem(*tvGroups);
}

void GroupsPane::ShowSelection()
{
    if (SelectedNode().isValid())
        tvGroups->scrollTo(SelectedNode());
}

void GroupsPane::TellSelection()
{
    if (m_changedByProgram)
        return;
    if (!tvGroups->selectionModel()->hasSelection())
        Q_EMIT AddressChosen({});
    TellChosen();
}

void GroupsPane::TellChosen()
{
    const QString callsign = SelectedNode().data(TalkgroupModel::TagRole).toString();
    if (!callsign.isEmpty())
        Q_EMIT AddressChosen(callsign);
    Q_EMIT AllowedChanged();
}

bool GroupsPane::ReloadGrps(const QString& lookfor)
{
    return Reload(true, lookfor, ReloadCause::Operator);
}

void GroupsPane::ReloadDynamicGroups(const QString& lookfor)
{
    QMetaObject::invokeMethod(
        this, [this, lookfor] { Reload(false, lookfor, ReloadCause::Radio); }, Qt::QueuedConnection);
}

// A reload that comes while an earlier one waits or asks whether to try again has nothing to add to it,
// unless the radio has changed something meanwhile.
bool GroupsPane::Reload(bool withStatic, const QString& lookfor, ReloadCause cause)
{
    if (m_reloading && cause == ReloadCause::Radio)
        m_reloadMissed = true;
    if (!m_session.LoggedOn || m_reloading ||
        (cause != ReloadCause::Operator && !m_services.session.Memory().Addresses().IsRead()))
        return false;
    const QScopedValueRollback reloading(m_reloading, true);
    const TreePlace place(*tvGroups, TalkgroupModel::PlaceRole);
    std::exception_ptr failure;
    bool givenUp = false;
    {
        const QScopedValueRollback quiet(m_changedByProgram, true);
        try {
            Load(withStatic, lookfor, cause);
        } catch (const std::exception& problem) {
            givenUp = cause == ReloadCause::Operator && WasGivenUp(problem); // what is shown stays
            if (!givenUp)
                failure = std::current_exception(); // half of the tree may be new
        } catch (...) {
            failure = std::current_exception(); // half of the tree may be new
        }
        SayCut();
        const bool keepPlace = cause != ReloadCause::Operator || givenUp;
        UnfoldFilled([&](const QModelIndex& node) {
            return keepPlace && place.WasFolded(node.data(TalkgroupModel::PlaceRole).toString());
        });
        if (keepPlace) {
            place.Restore([this](const QString& key) { return m_model->FindPlace(key); });
        } else {
            tvGroups->clearSelection();
            ScrollToLast();
        }
    }
    Q_EMIT AllowedChanged();
    if (std::exchange(m_reloadMissed, false))
        ReloadDynamicGroups(m_lookfor);
    if (failure)
        std::rethrow_exception(failure);
    return !givenUp;
}

void GroupsPane::Load(bool withStatic, const QString& lookfor, ReloadCause cause)
{
    if (withStatic)
        m_loader.LoadStatic(lookfor, cause);
    m_loader.LoadDynamic(lookfor, cause);
    if (withStatic)
        m_lookfor = lookfor; // not what was given up
    m_commands.MarkPending();
}

// Groups first: a root that is still folded has nothing to lay out.
void GroupsPane::UnfoldFilled(const std::function<bool(const QModelIndex&)>& wasFolded)
{
    for (const char* rootKey : {TalkgroupModel::StaticKey, TalkgroupModel::DynamicKey}) {
        const QModelIndex root = m_model->Root(rootKey);
        for (int row = 0; row < m_model->rowCount(root); ++row) {
            const QModelIndex group = m_model->index(row, 0, root);
            if (m_model->hasChildren(group) && !wasFolded(group))
                tvGroups->expand(group);
        }
        if (m_model->hasChildren(root) && !wasFolded(root))
            tvGroups->expand(root);
    }
}

void GroupsPane::SayCut()
{
    const int limit = m_loader.CutAt();
    m_notice->Say(limit == 0
                      ? QString()
                      : FormatMessage(m_services.strings, MainText::TalkgroupsCut, {QString::number(limit)}));
}

// To the node that was added last: a static group, then a dynamic one or its member.
void GroupsPane::ScrollToLast()
{
    for (const char* rootKey : {TalkgroupModel::StaticKey, TalkgroupModel::DynamicKey}) {
        QModelIndex last = m_model->Root(rootKey);
        while (m_model->hasChildren(last)) {
            last = m_model->index(m_model->rowCount(last) - 1, 0, last);
            tvGroups->scrollTo(last);
        }
    }
}

void GroupsPane::ReflectRegroup()
{
    KeepPlace([this] { m_commands.ReflectRegroup(); });
}

void GroupsPane::ReflectUngroup()
{
    KeepPlace([this] { m_commands.ReflectUngroup(); });
}

void GroupsPane::KeepPlace(const std::function<void()>& change)
{
    {
        const QScopedValueRollback quiet(m_changedByProgram, true);
        const TreePlace place(*tvGroups, TalkgroupModel::PlaceRole);
        change();
        m_markDue.start();
        UnfoldFilled([&](const QModelIndex& node) {
            return place.WasFolded(node.data(TalkgroupModel::PlaceRole).toString());
        });
        place.Restore([this](const QString& key) { return m_model->FindPlace(key); });
    }
    Q_EMIT AllowedChanged();
}
