#pragma once

#include "dao/base/OpenOptions.h"
#include "setup/base/RadioTrial.h"

class Settings;
struct IBeeper;
struct IDbLogon;
struct IPrompt;
struct ISerialDefaults;
struct ISerialPortList;
struct IStringSource;

// What the assistant works with; all must outlive it. Nobody is logged on while it is open.
struct SetUpServices {
    const IStringSource& strings;
    Settings& settings;
    IDbLogon& logon;
    IPrompt& prompt;
    IBeeper& beeper;
    ISerialDefaults& serial;
    const ISerialPortList* ports = nullptr; // null: only what is typed
    RadioTrial::ControlMaker makeControl;
    // Starts it beside this console. Returns why it could not be started; empty when it was.
    std::function<QString()> startDemonstration;
    // The next logon is that of this account, which has just been made.
    std::function<void(const QString& user, const QString& password)> logOnNextAs;
    dao::OpenOptions options{};
};
