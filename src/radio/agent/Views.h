#pragma once

#include "core/eventlog/EventLog.h"

#include <QDateTime>
#include <QString>

struct RadioNumbering;

// What the radio agent calls back into. The main window implements these; none is owned by the agent, and
// each must outlive the radio link facade or be taken back by SetViews({}).

struct ILogView {
    virtual ~ILogView() = default;
    // desc is the display text: a status already in words, a text message as received. `record` is what the
    // event log calls it, `shown` what the other party is called instead of its name; empty: by its name.
    virtual void LogShowNewLine(const QDateTime& time, EventType type, const QString& desc,
                                const QString& from, const QString& to, const QString& record,
                                const QString& shown) = 0;
};

struct IStatusView {
    virtual ~IStatusView() = default;
    virtual void SbrMessage(const QString& text) = 0;
    // A message too: the radio's answer to a question, whether the operator's or our own.
    virtual void ShowAnswer(const QString& text) = 0;
    // What became of a message or call, and why: answers do not replace it before it can have been read.
    virtual void ShowOutcome(const QString& text) = 0;
    // Field strength 0 (unknown) to 255 (highest).
    virtual void ShowOperatingConditions(bool inService, int fieldStrength) = 0;
    // Texts of the panels "callsign" and "ident".
    virtual void ShowOwnAddress(const QString& callsign, const QString& ident) = 0;
};

struct ITalkgroupView {
    virtual ~ITalkgroupView() = default;
    virtual void ReloadDynamicGroups(const QString& lookfor) = 0;
    // The radio has confirmed. Return true when there was a pending change, which is on its way to the
    // database and has to be shown. Nothing is pending afterwards.
    virtual bool StoreRegroup() = 0;
    virtual bool StoreUngroup() = 0;
    virtual void ReflectRegroup() = 0;
    virtual void ReflectUngroup() = 0;
    virtual void CancelRegroup() = 0;
    virtual void CancelUngroup() = 0;
};

// Where a report came from.
struct ScadaSource {
    QString dial; // its full address in the numbering in use
    QString callsign;
    QDateTime time; // when it arrived
};

struct IScadaView {
    virtual ~IScadaView() = default;
    virtual void UpdateScadaSensors(const QString& bits, const ScadaSource& source) = 0; // eight characters
    virtual void UpdateScadaControls(const QString& bits, const ScadaSource& source) = 0;
    virtual void ReflectScadaControl() = 0;
    virtual void CancelScadaControl() = 0;
};

struct IIndividualsView {
    virtual ~IIndividualsView() = default;
    virtual void ReloadInds() = 0;
};

struct INumberingView {
    virtual ~INumberingView() = default;
    virtual void DisplayDiags(const RadioNumbering& numbering) = 0;
};

// A view that does not exist is null and is skipped.
struct RadioViews {
    ILogView* log = nullptr;
    IStatusView* status = nullptr;
    ITalkgroupView* talkgroups = nullptr;
    IScadaView* scada = nullptr;
    IIndividualsView* individuals = nullptr;
    INumberingView* numbering = nullptr;
};
