#pragma once

#include <QDateTime>

struct IDbSession;

// What the administrators have set for the outstations of the site: which controls are critical, so that a
// switch needs a second step, and when values are too old to be trusted. Every console of the database has
// the same.
class ScadaGuard {
public:
    // Must outlive it.
    explicit ScadaGuard(IDbSession& session) : m_session(session) {}

    bool IsCritical(int control) const;
    bool HasCritical() const;
    // 0: values never are too old.
    int MinutesUntilOld() const;
    bool IsOld(const QDateTime& reported, const QDateTime& now) const;

    // Raise Error and dao::Error when it cannot be stored, as without the right to.
    void MarkCritical(int control, bool on);
    void SetMinutesUntilOld(int minutes);

private:
    unsigned Marks() const; // a bit for each control

    IDbSession& m_session;
};
