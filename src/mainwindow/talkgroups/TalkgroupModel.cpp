#include "mainwindow/talkgroups/TalkgroupModel.h"

#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/WaitingMark.h"
#include "mainwindow/talkgroups/NodeKeys.h"

namespace {

constexpr QLatin1String TextSeparator(" - ");

} // namespace

struct TalkgroupModel::Node {
    QString key;
    QString text;
    QString tag;
    QString picture;
    Node* parent = nullptr;
    int row = 0; // among the children of its parent
    std::vector<std::unique_ptr<Node>> children;
};

// No key begins with a slash.
QString TalkgroupModel::PlaceOf(const Node& node)
{
    return node.key.isEmpty() ? u'/' + node.tag : node.key;
}

TalkgroupModel::TalkgroupModel(const IStringSource& strings, QObject* parent)
    : QAbstractItemModel(parent),
      m_strings(strings),
      m_top(std::make_unique<Node>())
{
    Append(*m_top, QLatin1String(StaticKey), {}, {}).picture = QStringLiteral("talkgroup");
    Append(*m_top, QLatin1String(DynamicKey), {}, {}).picture = QStringLiteral("talkgroup_dynamic");
}

TalkgroupModel::~TalkgroupModel() = default;

void TalkgroupModel::SetRootCaptions(const QString& staticCaption, const QString& dynamicCaption)
{
    m_top->children[0]->text = staticCaption;
    m_top->children[1]->text = dynamicCaption;
    for (const auto& root : m_top->children)
        Tell(*root);
}

void TalkgroupModel::ReplaceStatic(const std::vector<TalkgroupRow>& groups)
{
    Node& root = *m_top->children[0];
    RemoveChildrenOf(root);
    m_static.clear();
    if (groups.empty())
        return;
    beginInsertRows(IndexOf(root), 0, static_cast<int>(groups.size()) - 1);
    for (const TalkgroupRow& group : groups) {
        Node& node = Append(root, {}, group.callsign + TextSeparator + group.ident, group.callsign);
        m_static.insert(PlaceOf(node), &node);
    }
    endInsertRows();
}

void TalkgroupModel::ReplaceDynamic(const std::vector<TalkgroupRow>& groups,
                                    const std::vector<GroupMemberRow>& members,
                                    const QString& defaultGroupKey)
{
    Node& root = *m_top->children[1];
    RemoveChildrenOf(root);
    m_byKey.reserve(static_cast<qsizetype>(groups.size() + members.size() + m_top->children.size()));
    if (groups.empty())
        return;
    // The groups come with their members, so that the view hears of them once.
    beginInsertRows(IndexOf(root), 0, static_cast<int>(groups.size()) - 1);
    for (const TalkgroupRow& group : groups) {
        const QString key = MakeGroupKey(group.id, group.pos);
        Node& node =
            Append(root, key,
                   group.callsign + TextSeparator + group.ident + TextSeparator + QString::number(group.pos),
                   group.callsign);
        if (key == defaultGroupKey)
            node.picture = QLatin1String(DefaultGroupPicture);
    }
    const QString picture = QLatin1String(MemberPicture);
    for (const GroupMemberRow& member : members) {
        if (Node* group = FindNode(MakeGroupKey(member.groupId, member.pos))) {
            const QString key = MakeMemberKey(member.groupId, member.memberId, member.pos);
            Append(*group, key, member.callsign, member.callsign).picture = picture;
        }
    }
    endInsertRows();
}

QModelIndex TalkgroupModel::Root(const char* rootKey) const
{
    return Find(QLatin1String(rootKey));
}

QModelIndex TalkgroupModel::Find(const QString& key) const
{
    const Node* node = FindNode(key);
    return node != nullptr ? IndexOf(*node) : QModelIndex();
}

QModelIndex TalkgroupModel::FindPlace(const QString& place) const
{
    const Node* node = m_static.value(place, nullptr);
    return node != nullptr ? IndexOf(*node) : Find(place);
}

void TalkgroupModel::SetPicture(const QString& key, const QString& picture)
{
    if (Node* node = FindNode(key)) {
        node->picture = picture;
        Tell(*node);
    }
}

void TalkgroupModel::SetOutcome(const QString& key, Outcome outcome)
{
    m_outcomes.insert(key, outcome);
    Tell(key);
}

void TalkgroupModel::ClearOutcomes()
{
    const auto outcomes = std::exchange(m_outcomes, {});
    for (auto outcome = outcomes.cbegin(); outcome != outcomes.cend(); ++outcome)
        Tell(outcome.key());
}

void TalkgroupModel::SetWaiting(const QString& key, const QString& record)
{
    m_waiting.push_back({key, record});
    Tell(key);
}

void TalkgroupModel::SetSafe(const QStringList& records)
{
    std::vector<Waiting> before;
    before.swap(m_waiting);
    for (const Waiting& one : before)
        if (!records.contains(one.record))
            m_waiting.push_back(one);
        else
            Tell(one.key);
}

void TalkgroupModel::ShowWaiting()
{
    for (Waiting& one : m_waiting) {
        one.marked = true;
        Tell(one.key);
    }
}

void TalkgroupModel::ClearWaiting()
{
    for (const Waiting& one : std::exchange(m_waiting, {}))
        Tell(one.key);
}

const TalkgroupModel::Waiting* TalkgroupModel::WaitingOf(const Node& node) const
{
    for (auto one = m_waiting.crbegin(); one != m_waiting.crend(); ++one)
        if (one->key == node.key)
            return &*one;
    return nullptr;
}

void TalkgroupModel::AddMember(const QString& callsign, qint32 groupId, qint32 memberId, quint8 pos)
{
    Node* group = FindNode(MakeGroupKey(groupId, pos));
    const QString key = MakeMemberKey(groupId, memberId, pos);
    if (group == nullptr || FindNode(key) != nullptr)
        return;
    const int row = static_cast<int>(group->children.size());
    beginInsertRows(IndexOf(*group), row, row);
    Append(*group, key, callsign, callsign).picture = QLatin1String(MemberPicture);
    endInsertRows();
}

void TalkgroupModel::MoveMember(const QString& key, qint32 newGroupId)
{
    const MemberKeyParts parts = PartsOfMemberKey(key);
    const QString newKey = MakeMemberKey(newGroupId, parts.memberId, parts.pos);
    Node* member = FindNode(key);
    Node* group = FindNode(MakeGroupKey(newGroupId, parts.pos));
    if (member == nullptr || newKey == key)
        return;
    if (group == nullptr || FindNode(newKey) != nullptr) {
        RemoveNode(*member);
        return;
    }
    const int row = static_cast<int>(group->children.size());
    beginMoveRows(IndexOf(*member->parent), member->row, member->row, IndexOf(*group), row);
    std::unique_ptr<Node> moved = std::move(member->parent->children[static_cast<std::size_t>(member->row)]);
    Detach(*member);
    m_byKey.remove(key);
    m_byKey.insert(newKey, member);
    member->key = newKey;
    member->parent = group;
    member->row = row;
    group->children.push_back(std::move(moved));
    endMoveRows();
}

void TalkgroupModel::RemoveElsewhere(qint32 groupId, qint32 memberId, quint8 pos)
{
    for (const auto& group : m_top->children[1]->children) {
        const GroupKeyParts parts = PartsOfGroupKey(group->key);
        if (parts.pos == pos && parts.groupId != groupId)
            Remove(MakeMemberKey(parts.groupId, memberId, pos));
    }
}

void TalkgroupModel::Remove(const QString& key)
{
    if (Node* node = FindNode(key))
        RemoveNode(*node);
}

void TalkgroupModel::RemoveChildren(const QString& key)
{
    if (Node* node = FindNode(key))
        RemoveChildrenOf(*node);
}

QModelIndex TalkgroupModel::index(int row, int column, const QModelIndex& parent) const
{
    const Node& above = NodeOf(parent);
    if (column != 0 || row < 0 || row >= static_cast<int>(above.children.size()))
        return {};
    return createIndex(row, 0, above.children[static_cast<std::size_t>(row)].get());
}

QModelIndex TalkgroupModel::parent(const QModelIndex& child) const
{
    return child.isValid() ? IndexOf(*NodeOf(child).parent) : QModelIndex();
}

int TalkgroupModel::rowCount(const QModelIndex& parent) const
{
    return static_cast<int>(NodeOf(parent).children.size());
}

QVariant TalkgroupModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Node& node = NodeOf(index);
    const Waiting* waiting = WaitingOf(node);
    switch (role) {
    case Qt::DisplayRole:
        return node.text;
    case Qt::DecorationRole:
        return Icon(node.picture);
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return StateText(node);
    case Qt::AccessibleTextRole:
        return waiting != nullptr ? node.text + u' ' + m_strings.LoadString(MainText::RecordNotStored)
                                  : node.text;
    case Qt::FontRole:
    case Qt::ForegroundRole:
        return waiting != nullptr && waiting->marked ? WaitingLook(role) : QVariant();
    case WaitingRole:
        return waiting != nullptr;
    case KeyRole:
        return node.key;
    case PlaceRole:
        return PlaceOf(node);
    case TagRole:
        return node.tag;
    case PictureRole:
        return node.picture;
    case OutcomeRole:
        return static_cast<int>(m_outcomes.value(node.key, Outcome::None));
    default:
        return {};
    }
}

TalkgroupModel::Node& TalkgroupModel::NodeOf(const QModelIndex& index) const
{
    return index.isValid() ? *static_cast<Node*>(index.internalPointer()) : *m_top;
}

TalkgroupModel::Node* TalkgroupModel::FindNode(const QString& key) const
{
    return m_byKey.value(key, nullptr);
}

QModelIndex TalkgroupModel::IndexOf(const Node& node) const
{
    return &node == m_top.get() ? QModelIndex() : createIndex(node.row, 0, &node);
}

TalkgroupModel::Node& TalkgroupModel::Append(Node& parent, const QString& key, const QString& text,
                                             const QString& tag)
{
    auto node = std::make_unique<Node>();
    node->key = key;
    node->text = text;
    node->tag = tag;
    node->parent = &parent;
    node->row = static_cast<int>(parent.children.size());
    Node& appended = *node;
    parent.children.push_back(std::move(node));
    if (!key.isEmpty())
        m_byKey.insert(key, &appended);
    return appended;
}

// Removes the node's place from its parent; unless somebody took the node over first, it is destroyed.
void TalkgroupModel::Detach(Node& node)
{
    auto& siblings = node.parent->children;
    const auto row = static_cast<std::size_t>(node.row);
    siblings.erase(siblings.begin() + node.row);
    for (std::size_t next = row; next < siblings.size(); ++next)
        siblings[next]->row = static_cast<int>(next);
}

void TalkgroupModel::RemoveNode(Node& node)
{
    RemoveChildrenOf(node);
    beginRemoveRows(IndexOf(*node.parent), node.row, node.row);
    m_byKey.remove(node.key);
    Detach(node);
    endRemoveRows();
}

void TalkgroupModel::RemoveChildrenOf(Node& node)
{
    if (node.children.empty())
        return;
    beginRemoveRows(IndexOf(node), 0, static_cast<int>(node.children.size()) - 1);
    for (const auto& child : node.children) {
        m_byKey.remove(child->key);
        for (const auto& grandchild : child->children)
            m_byKey.remove(grandchild->key);
    }
    node.children.clear();
    endRemoveRows();
}

void TalkgroupModel::Tell(const QString& key)
{
    if (const Node* node = FindNode(key))
        Tell(*node);
}

void TalkgroupModel::Tell(const Node& node)
{
    const QModelIndex index = IndexOf(node);
    Q_EMIT dataChanged(index, index);
}

QVariant TalkgroupModel::Icon(const QString& picture) const
{
    if (picture.isEmpty())
        return {};
    const auto known = m_icons.constFind(picture);
    return known != m_icons.constEnd() ? *known : *m_icons.insert(picture, LoadIcon(picture));
}

// In words, what pictures and fonts say.
QString TalkgroupModel::StateText(const Node& node) const
{
    const QString outcome = OutcomeText(node);
    return WaitingOf(node) == nullptr
               ? outcome
               : (outcome + u' ' + m_strings.LoadString(MainText::RecordNotStored)).trimmed();
}

QString TalkgroupModel::OutcomeText(const Node& node) const
{
    if (node.picture == QLatin1String(PendingPicture))
        return m_strings.LoadString(MainText::AwaitsAnswer);
    switch (m_outcomes.value(node.key, Outcome::None)) {
    case Outcome::Done:
        return m_strings.LoadString(MainText::OutcomeDone);
    case Outcome::NotDone:
        return m_strings.LoadString(MainText::OutcomeNotDone);
    case Outcome::None:
        break;
    }
    return node.picture == QLatin1String(DefaultGroupPicture) ? m_strings.LoadString(MainText::DefaultGroup)
                                                              : QString();
}
