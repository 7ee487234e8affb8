#pragma once

#include <QWidget>

class QTreeWidget;
struct IStringSource;

// "picGroups": the tree of talkgroups. It has its two roots, keys "static" and "dynamic".
class GroupsPane : public QWidget {
    Q_OBJECT

public:
    // Key of a node.
    static constexpr int KeyRole = Qt::UserRole;

    GroupsPane(const IStringSource& strings, QWidget* parent);

    // Captions of the roots.
    void LoadRootCaptions();

private:
    const IStringSource& m_strings;
    QTreeWidget* tvGroups;
};
