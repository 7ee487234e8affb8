#pragma once

#include "core/eventlog/LogChain.h"
#include "dao/base/LogReceipt.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <optional>
#include <vector>

// Goes through the records of a log, in the order in which they are stored, and says what somebody without
// the key has done to them. Needs memory for the consoles, not for the records.
class ChainCheck {
public:
    struct Place {
        qlonglong number = 0; // of the console
        qlonglong record = 0;
        QDateTime time;
    };
    struct Finding {
        qlonglong count = 0;
        Place first;
    };
    struct Console {
        QString name;
        QString check;       // of the key that most likely is its own; empty without any chain
        bool isOurs = false; // its key is here
        qlonglong records = 0;
        qlonglong older = 0; // before the first one with a chain
        std::optional<Place> begin;
        Place last;
        Finding changed;  // their chain is not theirs; or put in behind the last one
        Finding takenOut; // numbers that are missing; the place is that of the record behind them
        Finding unproved; // right behind a gap: nothing says what was before them
        Finding putIn;    // numbers that were there already
        Finding moved;    // behind a record with a higher number
        Finding unchained;
        Finding otherKey;

        bool IsWhole() const;
    };
    // What was said elsewhere of how far a console had come.
    struct Promise {
        dao::LogHead head;
        QString source;
        enum class State { Kept, Missing, Other, Restored } state = State::Missing;
        qsizetype restore = -1; // which of Restores()
    };
    struct Restore {
        Place place;
        QString text;
        bool isProven = false;             // by a key that is here
        QHash<QString, qlonglong> numbers; // how far the consoles had come in the backup
    };

    // How the text of the record begins that a restore leaves.
    static inline const QString RestoreText = QStringLiteral("Restored from a backup: ");

    // `identities`: whose consoles have to have one of these keys.
    ChainCheck(std::vector<LogChain> keys, QStringList identities, const QList<Promise>& promises);

    void Take(const dao::EventRecord& record);
    // After the last record.
    void End();

    QList<Console> Consoles() const;
    const QList<Promise>& Promises() const { return m_promises; }
    const QList<Restore>& Restores() const { return m_restores; }
    // Records that name no console: before the first chain of all, and behind it.
    qlonglong OldRecords() const { return m_old; }
    const Finding& Nobodys() const { return m_nobodys; }
    // Nothing was done to what the keys and promises that are here can prove.
    bool IsWhole() const;

private:
    struct State {
        Console console;
        QString chain;                      // of the record before
        QString proved;                     // of the last one that is proved
        Finding failed;                     // since then
        QMap<qlonglong, qlonglong> missing; // first and last
    };

    const LogChain* KeyOf(const QString& chain) const;
    void Follow(State& state, const dao::EventRecord& record);
    void TakeEarlier(State& state, const dao::EventRecord& record);
    void Prove(State& state, const dao::EventRecord& record, bool afterGap);
    void TakeRestore(const dao::EventRecord& record, bool isProven);
    void Compare(const dao::EventRecord& record);

    std::vector<LogChain> m_keys;
    QStringList m_identities;
    QList<Promise> m_promises;
    QHash<QString, QMultiHash<qlonglong, qsizetype>> m_promised; // by console and number
    QList<Restore> m_restores;
    QHash<QString, State> m_states; // by console
    bool m_begun = false;
    qlonglong m_old = 0;
    Finding m_nobodys;
};
