#pragma once

#include "mainwindow/talkgroups/RegroupRequests.h"
#include "mainwindow/talkgroups/RegroupStore.h"
#include "mainwindow/talkgroups/TalkgroupServices.h"

#include <QModelIndex>
#include <functional>

class TalkgroupModel;

// Sends regroup, ungroup and group name commands and keeps the one request that awaits the radio's answer.
// Only what the radio has confirmed is stored and shown as done; whatever else ends the transaction takes the
// request back. A command is sent only under a request in the database, which needs the right to regroup at
// that moment and a database that answers; otherwise the operator is told why not. Nodes are held by their
// keys, since boxes and reloads may come between command and answer.
class RegroupCommands {
public:
    RegroupCommands(const TalkgroupServices& services, TalkgroupModel& model);

    // Key of the default dynamic group; empty when none was chosen or its node is not shown.
    QString ShownDefaultGroup() const;
    // Raises Error when the choice cannot be stored; nothing is changed then.
    void SetDefaultGroup(const QModelIndex& groupNode);

    // A member was dropped on a group.
    void Drop(const QString& memberKey, const QString& groupKey);
    // Does nothing without a shown default group.
    void RegroupToDefault(const QString& callsign, qint32 memberId);
    // Of a dynamic group or a member; other nodes do nothing.
    void Ungroup(const QModelIndex& node);
    void SendGroupName(const QModelIndex& node);

    // The radio has confirmed: true when there was a pending request, which is on its way to the database and
    // has to be shown. Nothing is pending afterwards.
    bool StoreRegroup();
    bool StoreUngroup();
    void ReflectRegroup();
    void ReflectUngroup();
    // Take the pending request back; without one they do nothing.
    void CancelRegroup();
    void CancelUngroup();
    // The database has refused what was on its way.
    void TakeBack(const QString& record);

    // Another operator has logged on: what became of the last command is not shown any more.
    void ForgetOutcome();

    // Marks the node of the pending request again after a reload.
    void MarkPending();

private:
    bool IsPosition(quint8 pos);
    void Send(const RegroupRequest& request, const QString& group);
    bool SendUnderRequest(const RequestedChange& change, const QString& member, const QString& group);
    bool Attempt(const std::function<void()>& step);
    void End();
    void ShowDone(const QString& nodeKey);
    void Fill(const RegroupRequest& request);
    void Fill(const UngroupRequest& request);
    void ShowGroup(const QString& groupKey);
    QString DefaultGroupKey() const;

    TalkgroupServices m_services;
    TalkgroupModel& m_model;
    RegroupStore m_store;
    RegroupRequest m_regroup;
    UngroupRequest m_ungroup;
    QString m_record;    // of the event log: the change that was confirmed last
    QString m_takenBack; // the node that shows when it is refused
    QString m_request;   // under which the pending one may be stored
};
