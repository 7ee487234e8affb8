#pragma once

#include <QString>
#include <QStringList>

// What the program was asked for on its command line.
struct CommandLine {
    enum class Mode { Console, Demonstration, Tour, Help, Version, Wrong };

    Mode mode = Mode::Console;
    QString settingsFile; // empty: the user's own
    QString folder;       // of the demonstration or the tour
    QString script;       // of the tour; empty: the one beside the program
    QString problem;      // of a wrong command line

    // The first argument is the program's name.
    static CommandLine Parse(const QStringList& arguments);
    static QString Help();
};
