#pragma once

#include "radio/base/RadioServices.h"

#include <QObject>
#include <QString>

class Map27Control;
class RadioNotices;
class SessionNumbering;
struct RadioViews;

// What the radio tells about itself: its number and fleet, its condition, its network. Passes it on to
// whoever works with it or shows it. Deaf while nobody is logged on.
class RadioReports : public QObject {
    Q_OBJECT

public:
    // All must outlive it.
    RadioReports(const RadioServices& services, Map27Control& control, SessionNumbering& numbering,
                 RadioNotices& notices, const RadioViews& views);

private:
    void TakeNumbering();
    void TakeCondition(int inContact, int offHook, int transmitting, int fieldStrength,
                       const QString& octets);
    void TakeNetworkInfo(qint16 channel, qint16 systemIdentity);
    void AskCondition();
    void ShowOwnNumber(const QString& callsign, const QString& address);
    void ShowAnswer(const QString& text);

    RadioServices m_services;
    Map27Control& m_control;
    SessionNumbering& m_numbering;
    RadioNotices& m_notices;
    const RadioViews& m_views;
};
