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

// Writes a file of a temporary folder and returns its path.
QString WriteFile(const QString& folder, const QString& name, const QByteArray& content);
