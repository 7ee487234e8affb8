#include "mainwindow/IndividualsPane.h"

#include "core/ListHelpers.h"
#include "core/StringSource.h"
#include "mainwindow/TextIds.h"

#include <QHeaderView>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

IndividualsPane::IndividualsPane(const IStringSource& strings, QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picIndividuals"));
    auto* model = new QStandardItemModel(this);
    model->setHorizontalHeaderLabels({strings.LoadString(MainText::CallsignColumn),
                                      strings.LoadString(MainText::AddressColumn),
                                      strings.LoadString(MainText::NameColumn)});
    lvIndividuals = new QTreeView(this);
    lvIndividuals->setObjectName(QStringLiteral("lvIndividuals"));
    lvIndividuals->setProperty("accessibleNameId", MainText::IndividualsTab);
    lvIndividuals->setModel(model);
    lvIndividuals->setRootIsDecorated(false);
    lvIndividuals->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lvIndividuals->setEditTriggers(QAbstractItemView::NoEditTriggers);
    SetFullRowSelect(*lvIndividuals, true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lvIndividuals);
}

void IndividualsPane::SizeColumns()
{
    AutosizeColumns(*lvIndividuals, true);
}
