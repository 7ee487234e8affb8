#pragma once

#include <QPersistentModelIndex>
#include <QSet>
#include <QString>
#include <functional>
#include <vector>

class QTreeView;

// Where the operator is in a tree or list: the topmost shown node, the selected ones, and what is folded.
// Taken before the nodes are replaced or moved by something that the operator did not do, and restored
// afterwards, so that nothing jumps.
class TreePlace {
public:
    using FindKey = std::function<QModelIndex(const QString&)>;

    // Nodes are recognised by the text of keyRole.
    TreePlace(QTreeView& tree, int keyRole);

    // A node that is gone is no longer selected, nor is another in its place.
    void Restore(const FindKey& find) const;
    bool WasFolded(const QString& key) const { return m_folded.contains(key); }

private:
    // A node by its index while it is there, then by its key.
    struct Spot {
        QString key;
        QPersistentModelIndex index;
    };

    Spot SpotOf(const QModelIndex& node) const;
    void NoteFolded(const QModelIndex& parent, int levels);
    static QModelIndex Find(const Spot& spot, const FindKey& find);

    QTreeView& m_tree;
    int m_keyRole;
    Spot m_top;
    Spot m_current;
    std::vector<Spot> m_selected;
    int m_across;
    QSet<QString> m_folded;
};
