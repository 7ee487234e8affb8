#pragma once

#include "mainwindow/lists/Outcome.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>
#include <memory>
#include <vector>

struct IStringSource;

// A talkgroup of the directory and a radio regrouped into a dynamic one, as the database has them.
struct TalkgroupRow {
    QString callsign;
    QString ident;
    qint32 id = 0;  // address_id; of dynamic groups only, as is
    quint8 pos = 0; // the position that the group takes in a radio
};
struct GroupMemberRow {
    QString callsign;
    qint32 groupId = 0;
    qint32 memberId = 0;
    quint8 pos = 0;
};

// The tree of talkgroups: the roots "static" and "dynamic", the groups, and the members of dynamic groups.
// Nodes are named by their keys, since a reload replaces every node below a root; an operation on a key
// that is not there does nothing. Keys are unique; static groups have none.
class TalkgroupModel : public QAbstractItemModel {
    Q_OBJECT

public:
    static constexpr int KeyRole = Qt::UserRole;
    static constexpr int TagRole = Qt::UserRole + 1;     // callsign; empty for the roots
    static constexpr int PictureRole = Qt::UserRole + 2; // key of the picture; empty when there is none
    static constexpr int PlaceRole = Qt::UserRole + 3;   // names every node, even without a key

    static constexpr auto StaticKey = "static";
    static constexpr auto DynamicKey = "dynamic";
    static constexpr auto MemberPicture = "individual_dynamic";
    static constexpr auto DefaultGroupPicture = "defgroup";
    static constexpr auto PendingPicture = "pending"; // a command awaits the radio's answer

    TalkgroupModel(const IStringSource& strings, QObject* parent);
    ~TalkgroupModel() override;

    void SetRootCaptions(const QString& staticCaption, const QString& dynamicCaption);
    void ReplaceStatic(const std::vector<TalkgroupRow>& groups);
    // A member whose group is not among the groups is left out.
    void ReplaceDynamic(const std::vector<TalkgroupRow>& groups, const std::vector<GroupMemberRow>& members,
                        const QString& defaultGroupKey);

    QModelIndex Root(const char* rootKey) const;
    QModelIndex Find(const QString& key) const; // invalid when there is none
    QModelIndex FindPlace(const QString& place) const;

    void SetPicture(const QString& key, const QString& picture);
    // Outlasts every reload, even one in which the node is not shown.
    void SetOutcome(const QString& key, Outcome outcome);
    void ClearOutcomes();
    // The same for what a node shows and is not on a disk yet, by its record in the event log.
    void SetWaiting(const QString& key, const QString& record);
    void SetSafe(const QStringList& records);
    // Has what waits look so.
    void ShowWaiting();
    void ClearWaiting();

    // Does nothing when the member is already there.
    void AddMember(const QString& callsign, qint32 groupId, qint32 memberId, quint8 pos);
    // Puts a member under another group and gives it the key of its new place.
    void MoveMember(const QString& key, qint32 newGroupId);
    // Takes a radio away from every other group that it holds at this position.
    void RemoveElsewhere(qint32 groupId, qint32 memberId, quint8 pos);
    void Remove(const QString& key);
    void RemoveChildren(const QString& key);

    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& index, int role) const override;

private:
    struct Node;
    struct Waiting {
        QString key;
        QString record;
        bool marked = false; // and shown so
    };

    static QString PlaceOf(const Node& node);
    Node& NodeOf(const QModelIndex& index) const;
    Node* FindNode(const QString& key) const;
    QModelIndex IndexOf(const Node& node) const;
    Node& Append(Node& parent, const QString& key, const QString& text, const QString& tag);
    void Detach(Node& node);
    void RemoveNode(Node& node);
    void RemoveChildrenOf(Node& node);
    void Tell(const Node& node);
    QVariant Icon(const QString& picture) const;
    QString StateText(const Node& node) const;
    QString OutcomeText(const Node& node) const;
    const Waiting* WaitingOf(const Node& node) const;
    void Tell(const QString& key);

    const IStringSource& m_strings;
    std::unique_ptr<Node> m_top; // invisible; its children are the roots
    QHash<QString, Node*> m_byKey;
    QHash<QString, Node*> m_static; // by their places
    QHash<QString, Outcome> m_outcomes;
    std::vector<Waiting> m_waiting;
    mutable QHash<QString, QIcon> m_icons;
};
