#pragma once

#include "app/TourRunner.h"
#include "mainwindow/Outcome.h"

#include <QString>

class Demonstration;
struct IStringSource;

// The steps of the guided tour, chapter by chapter, and what they look at.
class TourScript {
public:
    TourScript(const IStringSource& strings, Demonstration& demonstration);

    std::vector<TourStep> Steps();

private:
    using Look = std::function<QString()>;

    void FirstStart();
    void LogOn();
    void Messages();
    void OutgoingCalls();
    void IncomingCalls();
    void Recovery();
    void KillRadio(const QString& during);
    void Window();
    void LogOff();
    // In TourTalkgroups.cpp and TourScada.cpp.
    void DutyStatus();
    void Regroup();
    void RegroupNotDone();
    void NamesAndUngroup();
    void Outstation();
    void SwitchControls();
    // In TourNumbering.cpp; they begin with nobody logged on.
    void FleetPlan();
    void FleetPlanRefusals();
    void FleetPlanEntries();
    void AnnParameters();
    void ChooseNumbering(const QString& code);
    // In TourAdmin.cpp; begin with nobody logged on.
    void Administration();
    void DirectoryEntries();
    void DirectoryProtection();
    void StatusMessages();
    void Accounts();
    void AccountChanges();
    void Guide();
    void LogOnAdministrator(const QString& name, const QString& expected, Look look);
    void LogOffAdministrator(const QString& name);
    void DialUnit20(const QString& name, const QString& dial, int status);

    void Add(const QString& name, const QString& expected, std::function<void()> act, Look look);
    void SelectMessage(const QString& selector);
    // A command of the simulated radio; raises Error unless it says that it was done.
    void Radio(const QString& command);

    QString Text(int id) const;
    // What must be seen.
    Look Shows(const QString& widget, const QString& text) const;
    Look Contains(const QString& widget, const QString& text) const;
    Look Visible(const QString& widget) const;
    Look Hidden(const QString& widget) const;
    Look Box(int textId) const;
    // A node of the talkgroup tree, an item of the outstation's lists, or one of any list.
    static Look Node(const QString& node, const char* picture, Outcome outcome = Outcome::None);
    static Look Signal(const QString& list, int number, const char* picture, Outcome outcome = Outcome::None);
    static Look Listed(const QString& view, const QString& item, bool there);
    Look LogShows(const QString& text) const;
    Look LogLacks(const QString& text) const;
    static Look FillsScreen(bool fills);
    static Look All(std::vector<Look> looks);

    const IStringSource& m_strings;
    Demonstration& m_demonstration;
    std::vector<TourStep> m_steps;
};
