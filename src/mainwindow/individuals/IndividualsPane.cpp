#include "mainwindow/individuals/IndividualsPane.h"

#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "core/widgets/ListHelpers.h"
#include "core/widgets/PlainIconDelegate.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/individuals/IndividualsReader.h"
#include "mainwindow/lists/AddressesFromSelection.h"
#include "mainwindow/lists/ListGestures.h"
#include "mainwindow/lists/ListLimit.h"
#include "mainwindow/lists/ListNotice.h"
#include "mainwindow/lists/PaneCover.h"
#include "mainwindow/talkgroups/TreePlace.h"

#include <QLabel>
#include <QScopedValueRollback>
#include <QTreeView>
#include <QVBoxLayout>
#include <utility>

IndividualsPane::IndividualsPane(const Parts& parts, QWidget* parent)
    : QWidget(parent),
      m_parts(parts),
      m_model(new IndividualsModel(parts.strings, this)),
      m_cover(NewPaneCover(parts.strings, this)),
      m_notice(new ListNotice(QStringLiteral("individualsNotice"), this))
{
    setObjectName(QStringLiteral("picIndividuals"));
    BuildList();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(lvIndividuals, 1);
    layout->addWidget(m_cover, 1);
    layout->addWidget(m_notice);
}

void IndividualsPane::BuildList()
{
    lvIndividuals = new QTreeView(this);
    lvIndividuals->setObjectName(QStringLiteral("lvIndividuals"));
    lvIndividuals->setProperty("accessibleNameId", MainText::IndividualsTab);
    lvIndividuals->setModel(m_model);
    lvIndividuals->setRootIsDecorated(false);
    lvIndividuals->setUniformRowHeights(true);
    lvIndividuals->setIconSize(SmallIconSize(*this));
    lvIndividuals->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lvIndividuals->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvIndividuals->setItemDelegate(new PlainIconDelegate(lvIndividuals));
    SetFullRowSelect(*lvIndividuals, true);

    connect(lvIndividuals->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &IndividualsPane::TellSelection);
    // A key selects an item before it makes it current.
    connect(lvIndividuals->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        if (!m_changedByProgram)
            Q_EMIT AllowedChanged();
    });
    connect(lvIndividuals, &QTreeView::clicked, this, &IndividualsPane::TellChosen);
    auto* gestures = new ListGestures(*lvIndividuals);
    connect(gestures, &ListGestures::Chosen, this, &IndividualsPane::TellChosen);
    connect(gestures, &ListGestures::CallRequested, this, &IndividualsPane::CallRequested);
    connect(gestures, &ListGestures::ReloadRequested, this, [this] { ReloadInds({}); });
    connect(gestures, &ListGestures::MenuRequested, this, &IndividualsPane::MenuRequested);
}

void IndividualsPane::Cover(bool on)
{
    lvIndividuals->setVisible(!on);
    m_cover->setVisible(on);
}

void IndividualsPane::SizeColumns()
{
    AutosizeColumns(*lvIndividuals, true);
}

QModelIndex IndividualsPane::SelectedItem() const
{
    return GetSelectedItem(*lvIndividuals);
}

bool IndividualsPane::AllowsRegrouping() const
{
    return AllowsRegroup(SelectedItem().data(IndividualsModel::PictureRole).toString());
}

void IndividualsPane::ShowSelection()
{
    if (SelectedItem().isValid())
        lvIndividuals->scrollTo(SelectedItem());
}

// The operator has changed the selection; deselecting the last item leaves no address.
void IndividualsPane::TellSelection()
{
    if (m_changedByProgram)
        return;
    if (!lvIndividuals->selectionModel()->hasSelection())
        Q_EMIT AddressesChosen({});
    TellChosen();
}

void IndividualsPane::TellChosen()
{
    Q_EMIT AllowedChanged();
    if (const auto addresses = AddressesFromSelection(*lvIndividuals, IndividualsModel::TagRole))
        Q_EMIT AddressesChosen(*addresses);
}

bool IndividualsPane::ReloadInds(const QString& lookfor)
{
    return Reload(lookfor, ReloadCause::Operator);
}

void IndividualsPane::ReloadInds()
{
    if (std::exchange(m_reloadDue, true))
        return;
    const auto reload = [this] {
        m_reloadDue = false;
        Reload({}, ReloadCause::Radio);
    };
    QMetaObject::invokeMethod(this, reload, Qt::QueuedConnection);
}

// A reload that comes while an earlier one waits or asks whether to try again has nothing to add to it,
// unless the radio has changed something meanwhile.
bool IndividualsPane::Reload(const QString& lookfor, ReloadCause cause)
{
    if (m_reloading && cause == ReloadCause::Radio)
        m_reloadMissed = true;
    if (!m_parts.session.LoggedOn || m_reloading)
        return false;
    const QScopedValueRollback reloading(m_reloading, true);
    std::vector<IndividualRow> rows;
    const int limit = AddressListLimit(m_parts.settings);
    if (cause != ReloadCause::Operator) {
        if (!m_parts.database.Memory().Addresses().IsRead())
            return false;
        DrawIndividuals(m_parts.database, lookfor, limit + 1, rows);
    }
    for (bool again = cause == ReloadCause::Operator; again;) {
        rows.clear();
        try {
            SessionMemory& memory = m_parts.database.Memory();
            if (memory.IsAwaiting()) { // a change of duty may still be on its way
                memory.ReadAgain();
                DrawIndividuals(m_parts.database, lookfor, limit + 1, rows);
            } else {
                ReadIndividuals(m_parts.database, lookfor, limit + 1, rows);
            }
            again = false;
        } catch (const std::exception& failure) {
            ProgramLog::Write(DescribeError(failure, m_parts.strings));
            if (WasGivenUp(failure)) { // what is shown stays
                ReloadMissed();
                return false;
            }
            again = m_parts.prompt.AskQuestion(m_parts.strings.LoadString(MainText::IndividualsUnread));
        }
    }
    m_lookfor = lookfor;
    const bool cut = CutToLimit(rows, limit);
    {
        const QScopedValueRollback quiet(m_changedByProgram, true);
        const TreePlace place(*lvIndividuals, IndividualsModel::KeyRole);
        m_model->Replace(std::move(rows));
        SizeColumns();
        m_notice->Say(cut ? FormatMessage(m_parts.strings, MainText::RadiosCut, {QString::number(limit)})
                          : QString());
        if (cause != ReloadCause::Operator)
            place.Restore([this](const QString& key) { return m_model->Find(key); });
    }
    Q_EMIT AllowedChanged();
    ReloadMissed();
    return true;
}

void IndividualsPane::ReloadMissed()
{
    if (std::exchange(m_reloadMissed, false))
        ReloadInds();
}
