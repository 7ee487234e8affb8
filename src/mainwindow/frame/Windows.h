#pragma once

#include <QString>

class winMain;

// Opens the windows that do not belong to the main window's own room. The application implements it, so that
// rooms with windows need not know each other. `owner` is the window that they appear in front of and tell
// what they changed. All are modal to it and return when closed, unless stated otherwise; none raises.
struct IWindows {
    virtual ~IWindows() = default;

    virtual void OpenUserManager(winMain& owner) = 0;
    // Settings of the numbering in use.
    virtual void OpenNumbering(winMain& owner) = 0;
    virtual void OpenNumberingSelection(winMain& owner) = 0;
    // Returns at once.
    virtual void OpenNumberingDiagnostics(winMain& owner) = 0;
    virtual void OpenAddressDirectory(winMain& owner) = 0;
    virtual void OpenStatusEditor(winMain& owner) = 0;
    // The log of all consoles. Returns at once.
    virtual void OpenLogbook(winMain& owner) = 0;
    virtual void OpenShiftReport(winMain& owner) = 0;
    virtual void OpenWhoIsWhere(winMain& owner) = 0;
    // Of a radio or group of the directory; of all for 0. Returns at once.
    virtual void OpenRegroupHistory(qint32 addressId, const QString& callsign) = 0;
    // The assistant. True when a database can be opened now.
    virtual bool OpenSetUp(winMain& owner) = 0;
    // At its contents. Returns at once.
    virtual void OpenHelp(winMain& owner) = 0;
    virtual void OpenAbout(winMain& owner) = 0;
    // Returns at once.
    virtual void OpenDiagnostics(winMain& owner) = 0;
};
