#pragma once

#include <QProcess>
#include <QString>

struct IStringSource;

namespace dao {
struct Location;
}

// What a demonstration needs beside the console: a folder of its own with settings and files, a simulated
// radio on a pseudo terminal, and a database with a small fleet. The operator's own settings and data are not
// touched.
class Demonstration {
public:
    // Accounts of the demonstration database.
    struct Account {
        QString user;
        QString password;
        bool administrator;
    };
    static const Account Administrator;
    static const Account Operator;

    // Everything is kept in this folder, which is created. Raises Error.
    Demonstration(const QString& folder, const IStringSource& strings);
    // Ends the simulated radio.
    ~Demonstration();

    // A program of its own with a demonstration in the user's data folder. Returns why there is none; empty
    // when it runs.
    static QString StartBeside(const IStringSource& strings);

    const QString& Folder() const { return m_folder; }
    QString SettingsFile() const;
    QString DatabaseFile() const;
    QString WorkgroupFile() const;
    QString PortLink() const; // the radio's port, once it was started
    QString TraceFile() const;

    // Removes what an earlier demonstration left in the folder.
    void Clean();
    // Creates the database with its accounts and its fleet, unless it is there already. Raises dao::Error.
    void CreateDatabase();
    // Points the settings file at the radio and the database, keeping what else it holds.
    void WriteSettings() const;
    // Puts fleet plan, directory, statuses and the operator's account into an open, empty database.
    static void Fill(const dao::Location& location, const Account& administrator);
    // Starts the simulated radio with a scenario of its own and waits until the console may connect. It ends
    // with this program, however this one ends. Raises Error.
    // The radio's notes go to the program's log file, its trace to `traceFile` unless that is empty.
    void StartRadio(const QString& scenario, const QString& traceFile = {});
    // Ends the simulated radio without warning, as a crash or a pulled plug would.
    void KillRadio();
    // Starts it again as it was. Its trace begins a file of its own: wire-2.jsonl and so on.
    void RestartRadio();
    // One command to the radio's trainer's channel; returns its answer, empty after two seconds without one.
    QString TellRadio(const QString& command);

private:
    void RunRadio();

    const IStringSource& m_strings;
    QString m_folder;
    QProcess m_radio;
    QString m_scenario;
    QString m_traceFile; // empty: none
    int m_starts = 0;
};
