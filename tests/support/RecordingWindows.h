#pragma once

#include "mainwindow/frame/Windows.h"

#include <QStringList>

// Notes which windows the main window opened.
struct RecordingWindows : IWindows {
    void OpenUserManager(winMain&) override { opened.append("users"); }
    void OpenNumbering(winMain&) override { opened.append("numbering"); }
    void OpenNumberingSelection(winMain&) override { opened.append("selection"); }
    void OpenNumberingDiagnostics(winMain&) override { opened.append("diagnostics"); }
    void OpenAddressDirectory(winMain&) override { opened.append("directory"); }
    void OpenStatusEditor(winMain&) override { opened.append("statuses"); }
    void OpenLogbook(winMain&) override { opened.append("logbook"); }
    void OpenShiftReport(winMain&) override { opened.append("shift"); }
    void OpenWhoIsWhere(winMain&) override { opened.append("where"); }
    void OpenRegroupHistory(qint32 id, const QString& callsign) override
    {
        opened.append("regroupings " + QString::number(id) + ' ' + callsign);
    }
    bool OpenSetUp(winMain&) override
    {
        opened.append("setup");
        return false;
    }
    void OpenHelp(winMain&) override { opened.append("help"); }
    void OpenAbout(winMain&) override { opened.append("about"); }
    void OpenDiagnostics(winMain&) override { opened.append("diagnostics"); }

    QStringList opened;
};
