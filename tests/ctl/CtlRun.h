#pragma once

#include <QByteArray>
#include <QStringList>

// What one run of the real program printed and returned. A run that does not end within ten seconds has code
// -1.
struct CtlRun {
    int code;
    QByteArray out;
    QByteArray err;
};

CtlRun RunCtl(const QStringList& arguments, const QByteArray& input = {});
// The same with the passwords that it asks for, each on a line of its own.
CtlRun RunWithPasswords(const QStringList& arguments, const QByteArray& passwords = "secret\n");

// That a run has failed with that code for that reason, and printed nothing else.
void ExpectFailure(const CtlRun& run, const QByteArray& reason, int code = 1);
