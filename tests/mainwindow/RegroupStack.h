#pragma once

#include "mainwindow/frame/Services.h"
#include "mainwindow/frame/winMain.h"
#include "mainwindow/talkgroups/NodeKeys.h"
#include "mainwindow/talkgroups/TalkgroupModel.h"
#include "radio/RadioStack.h"

#include <QAction>
#include <QMouseEvent>
#include <QTreeView>

// Drags with the left button held, from one place of a view to another.
inline void DragMouse(QWidget& viewport, const QPoint& from, const QPoint& to, bool release = true)
{
    QTest::mousePress(&viewport, Qt::LeftButton, Qt::NoModifier, from);
    for (const QPoint& place : {(from + to) / 2, to}) {
        QMouseEvent move(QEvent::MouseMove, QPointF(place), QPointF(viewport.mapToGlobal(place)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&viewport, &move);
    }
    if (release)
        QTest::mouseRelease(&viewport, Qt::LeftButton, Qt::NoModifier, to);
}

// The real main window on a real database, with a simulated radio at the other end of the real wire. Four
// dynamic groups: Alpha and Bravo with two radios each and Delta, all at position 3, and Charlie at 4.
class RegroupStack : public RadioStack {
public:
    RegroupStack()
    {
        for (const auto& [callsign, ident, pos] :
             {std::tuple("Alpha", "/0007001", 3), std::tuple("Bravo", "/0007002", 3),
              std::tuple("Charlie", "/0007000", 4), std::tuple("Delta", "/0007003", 3)}) {
            const auto groups = session.Database().OpenDynaset(QStringLiteral("browse_talkgroups"));
            groups->AddNew();
            groups->SetField(QStringLiteral("callsign"), QLatin1String(callsign));
            groups->SetField(QStringLiteral("IDENT"), QLatin1String(ident));
            groups->SetField(QStringLiteral("Type"), 2);
            groups->SetField(QStringLiteral("dynamic"), true);
            groups->SetField(QStringLiteral("default_pos"), pos);
            groups->Update();
        }
        FillRows();
        settings.SetDefaultGroupKey(MakeGroupKey(Id("Charlie"), 4));
        window = std::make_unique<winMain>(console.MainWindowServices());
        window->resize(700, 600);
        window->show();
        Find<QAction>("miLogOnLogOff").trigger();
        EXPECT_TRUE(RunUntil([this] { return !executive.MyAddress().isEmpty(); }));
        Run(1000);
    }
    ~RegroupStack() { window->CloseUnasked(); }

    template <typename T> T& Find(const char* name) { return *window->findChild<T*>(QLatin1String(name)); }
    QTreeView& Tree() { return Find<QTreeView>("tvGroups"); }
    TalkgroupModel& Model() { return dynamic_cast<TalkgroupModel&>(*Tree().model()); }

    qint32 Id(const QString& callsign) { return EntryOf(callsign)->Field("address_id").toInt(); }
    QString GroupKey(const QString& group, quint8 pos = 3) { return MakeGroupKey(Id(group), pos); }
    QString MemberKey(const QString& group, const QString& member, quint8 pos = 3)
    {
        return MakeMemberKey(Id(group), Id(member), pos);
    }

    // The rows as they are at first.
    void FillRows()
    {
        session.Workspace().BeginTrans();
        for (const auto& [group, pos] :
             {std::pair("Alpha", 3), std::pair("Bravo", 3), std::pair("Delta", 3), std::pair("Charlie", 4)}) {
            const auto query = session.Database().QueryDef(QStringLiteral("ungroup"));
            query->SetParameter(QStringLiteral("gi"), Id(QLatin1String(group)));
            query->SetParameter(QStringLiteral("p"), pos);
            query->Execute();
        }
        for (const auto& [group, member] : {std::pair("Alpha", "Unit20"), std::pair("Alpha", "Unit22"),
                                            std::pair("Bravo", "Unit25"), std::pair("Bravo", "Unit27")})
            AddRow(QLatin1String(group), QLatin1String(member), 3);
        session.Workspace().CommitTrans();
    }
    void AddRow(const QString& group, const QString& member, int pos)
    {
        ConsoleStack::AddRow("dynamic_regroup",
                             {{"group_id", Id(group)}, {"member_id", Id(member)}, {"pos", pos}});
    }

    // Keys of the members that the database and the tree hold, sorted.
    QStringList Rows()
    {
        QStringList keys;
        const auto rows = session.Database().OpenSnapshot(QStringLiteral("dynamic_members"));
        for (; !rows->Eof(); rows->MoveNext())
            keys.append(MakeMemberKey(rows->Field(QStringLiteral("group_id")).toInt(),
                                      rows->Field(QStringLiteral("member_id")).toInt(),
                                      static_cast<quint8>(rows->Field(QStringLiteral("pos")).toInt())));
        keys.sort();
        return keys;
    }
    QStringList Shown(int role = TalkgroupModel::KeyRole)
    {
        QStringList texts;
        const QModelIndex root = Model().Root(TalkgroupModel::DynamicKey);
        for (int row = 0; row < Model().rowCount(root); ++row) {
            const QModelIndex group = Model().index(row, 0, root);
            if (role != TalkgroupModel::KeyRole)
                texts.append(group.data(role).toString());
            for (int member = 0; member < Model().rowCount(group); ++member)
                texts.append(Model().index(member, 0, group).data(role).toString());
        }
        texts.sort();
        return texts;
    }

    QPoint PlaceOf(const QString& key) { return Tree().visualRect(Model().Find(key)).center(); }
    void Select(const QString& key)
    {
        QTest::mouseClick(Tree().viewport(), Qt::LeftButton, Qt::NoModifier, PlaceOf(key));
        ASSERT_EQ(Tree().currentIndex().data(TalkgroupModel::KeyRole).toString(), key);
    }
    void Trigger(const char* name)
    {
        ASSERT_TRUE(Find<QAction>(name).isEnabled()) << name;
        Find<QAction>(name).trigger();
    }
    void Drag(const QString& member, const QString& group)
    {
        DragMouse(*Tree().viewport(), PlaceOf(member), PlaceOf(group));
    }

    std::unique_ptr<winMain> window;
};
