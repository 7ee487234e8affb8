#pragma once

#include "mainwindow/keys/KeyTable.h"

#include <QObject>
#include <QStringList>

class QAction;
class Settings;
struct IStringSource;

// The keys as they hold for whoever is logged on: of each row of the table the key that the operator has
// chosen, or as the console comes. Kept in the settings for each account.
class KeyBindings : public QObject {
    Q_OBJECT

public:
    // Both must outlive it.
    KeyBindings(Settings& settings, const IStringSource& strings);

    // Reads an operator's keys; with no name they are as the console comes, and cannot be changed. What
    // stands in the file and cannot be used is left out; returns a sentence for each. Raises Error when the
    // file cannot be read, and the keys are as the console comes.
    QStringList Load(const QString& user);
    bool MayChange(const KeyRow& row) const;

    // Of an Own row the key, of a Second row the one beside it; empty: none.
    QKeySequence Chosen(const KeyRow& row) const;
    // Gives a row another key, or none. Returns why it is refused, in words; empty: it was not. Raises Error
    // when it cannot be stored.
    QString Choose(const KeyRow& row, const QKeySequence& key);
    // The same with the key as the console comes.
    QString Restore(const KeyRow& row);

    struct Meaning {
        const KeyRow* row = nullptr; // none: the key has no meaning of ours
        bool second = false;         // it is the one beside that of the row
    };
    Meaning MeaningOf(QKeyCombination pressed) const;

    // An action of the menus has a row's key from now on, whatever that is.
    void Follow(QAction& action, KeyCommand command, int place = 0);
    QString TextOf(KeyCommand command, int place) const;
    QString Describe(const KeyRow& row) const;

Q_SIGNALS:
    void Changed();

private:
    QString Refusal(const KeyRow& row, const QKeySequence& key) const;
    const KeyRow* HolderOf(const QKeySequence& key, const KeyRow& except) const;
    void Store(const KeyRow& row, const QKeySequence& key);

    Settings& m_settings;
    const IStringSource& m_strings;
    QString m_section;                  // empty: nobody's
    std::vector<QKeySequence> m_chosen; // by row
};
