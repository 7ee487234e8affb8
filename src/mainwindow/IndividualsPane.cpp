#include "mainwindow/IndividualsPane.h"

#include "core/Errors.h"
#include "core/Icons.h"
#include "core/ListHelpers.h"
#include "core/PlainIconDelegate.h"
#include "core/ProgramLog.h"
#include "core/Prompt.h"
#include "core/StringSource.h"
#include "mainwindow/AddressesFromSelection.h"
#include "mainwindow/IndividualsReader.h"
#include "mainwindow/ListGestures.h"
#include "mainwindow/ListLimit.h"
#include "mainwindow/SessionState.h"
#include "mainwindow/TextIds.h"
#include "mainwindow/TreePlace.h"

#include <QScopedValueRollback>
#include <QTreeView>
#include <QVBoxLayout>

IndividualsPane::IndividualsPane(const Parts& parts, QWidget* parent)
    : QWidget(parent),
      m_parts(parts),
      m_model(new IndividualsModel(parts.strings, this))
{
    setObjectName(QStringLiteral("picIndividuals"));
    BuildList();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lvIndividuals);
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
            &IndividualsPane::TellChosen);
    connect(lvIndividuals, &QTreeView::clicked, this, &IndividualsPane::TellChosen);
    auto* gestures = new ListGestures(*lvIndividuals);
    connect(gestures, &ListGestures::CallRequested, this, &IndividualsPane::CallRequested);
    connect(gestures, &ListGestures::ReloadRequested, this, [this] { ReloadInds({}); });
    connect(gestures, &ListGestures::MenuRequested, this, &IndividualsPane::MenuRequested);
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
    if (SelectedItem().isValid()) {
        lvIndividuals->scrollTo(SelectedItem());
    }
}

void IndividualsPane::TellChosen()
{
    if (m_changedByProgram) {
        return;
    }
    Q_EMIT AllowedChanged();
    if (const auto addresses = AddressesFromSelection(*lvIndividuals, IndividualsModel::TagRole)) {
        Q_EMIT AddressesChosen(*addresses);
    }
}

void IndividualsPane::ReloadInds(const QString& lookfor)
{
    Reload(lookfor, ReloadCause::Operator);
}

void IndividualsPane::ReloadInds()
{
    if (std::exchange(m_reloadDue, true)) {
        return;
    }
    const auto reload = [this] {
        m_reloadDue = false;
        Reload({}, ReloadCause::Radio);
    };
    QMetaObject::invokeMethod(this, reload, Qt::QueuedConnection);
}

// A reload that comes while another one asks whether to try again has nothing to add to it.
void IndividualsPane::Reload(const QString& lookfor, ReloadCause cause)
{
    if (!m_parts.session.LoggedOn || m_reloading) {
        return;
    }
    const QScopedValueRollback reloading(m_reloading, true);
    m_lookfor = lookfor;
    std::vector<IndividualRow> rows;
    for (bool again = true; again;) {
        rows.clear();
        try {
            ReadIndividuals(m_parts.database, lookfor, AddressListLimit(m_parts.settings), rows);
            again = false;
        } catch (const std::exception& failure) {
            if (cause == ReloadCause::OtherConsole) {
                throw;
            }
            ProgramLog::Write(DescribeError(failure, m_parts.strings));
            again = m_parts.prompt.AskQuestion(m_parts.strings.LoadString(MainText::IndividualsUnread));
        }
    }
    {
        const QScopedValueRollback quiet(m_changedByProgram, true);
        const TreePlace place(*lvIndividuals, IndividualsModel::KeyRole);
        m_model->Replace(std::move(rows));
        SizeColumns();
        if (cause != ReloadCause::Operator) {
            place.Restore([this](const QString& key) { return m_model->Find(key); });
        }
    }
    Q_EMIT AllowedChanged();
}
