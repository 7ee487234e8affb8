#include "mainwindow/GroupsPane.h"

#include "core/Icons.h"
#include "core/StringSource.h"
#include "mainwindow/TextIds.h"

#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

QTreeWidgetItem* NewRoot(QTreeWidget* tree, const char* key, const char* picture)
{
    auto* root = new QTreeWidgetItem(tree);
    root->setData(0, GroupsPane::KeyRole, QLatin1String(key));
    root->setIcon(0, LoadIcon(QLatin1String(picture)));
    return root;
}

} // namespace

GroupsPane::GroupsPane(const IStringSource& strings, QWidget* parent) : QWidget(parent), m_strings(strings)
{
    setObjectName(QStringLiteral("picGroups"));
    tvGroups = new QTreeWidget(this);
    tvGroups->setObjectName(QStringLiteral("tvGroups"));
    tvGroups->setProperty("accessibleNameId", MainText::TalkgroupsTab);
    tvGroups->setHeaderHidden(true);
    tvGroups->setIconSize(IconSize(*this));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tvGroups);

    NewRoot(tvGroups, "static", "talkgroup");
    NewRoot(tvGroups, "dynamic", "talkgroup_dynamic");
    LoadRootCaptions();
}

void GroupsPane::LoadRootCaptions()
{
    tvGroups->topLevelItem(0)->setText(0, m_strings.LoadString(MainText::StaticRoot));
    tvGroups->topLevelItem(1)->setText(0, m_strings.LoadString(MainText::DynamicRoot));
}
