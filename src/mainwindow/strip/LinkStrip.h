#pragma once

#include "radio/base/LinkStatus.h"

#include <QWidget>

class AttentionPanel;
class QLabel;
class StripRow;
struct Clock;
struct IStringSource;

// The strip under the toolbar: what waits for a person, state of the radio link, the word SIMULATION while
// the radio is a simulated one, what has failed until the operator has dismissed each, what there is to know
// of the call in progress, a radio that is in use by itself, and a numbering that does not fit the radio
// until it does or is dismissed. It takes up no room when it has nothing to say.
class LinkStrip : public QWidget {
    Q_OBJECT

public:
    // All must outlive the strip; it takes the panel, made without a parent or with it.
    LinkStrip(const IStringSource& strings, const Clock& clock, AttentionPanel& attention, QWidget* parent);

    void ShowLink(const LinkStatus& status);
    // The first one is shown; an empty list ends them.
    void ShowDoubts(const QStringList& doubts);

    // What was asked for and has not happened: the newest is shown, with the number of the others.
    void ShowFailure(const QString& text);
    // Of the call in progress; empty ends it.
    void ShowCallNotice(const QString& text);
    // The radio is off hook or transmits by itself; empty: no longer.
    void ShowRadioInUse(const QString& text);

    // A database server that does not answer; how many log records wait, and why in words.
    void ShowDatabase(bool away, int waiting, const QString& cause);
    // In its place: how many wait on the disk for the next logon.
    void ShowRecordsLeft(int records);

    // Nothing can be heard on this computer; empty ends it.
    void ShowSilent(const QString& text);

    // Height that its content needs at a given width; 0 without content.
    int HeightAt(int width) const;

Q_SIGNALS:
    // The height that the strip needs may have changed.
    void ContentChanged();
    // The operator wants the radio to end whatever it is doing.
    void HangUpRequested();

private:
    StripRow* NewRow(const char* topic, const char* picture, QRgb back, QRgb text);
    void BuildRadioRows();
    void Say(StripRow& row, const QString& text);
    void ShowNewestFailure();
    QWidget* BuildStateRow();

    const IStringSource& m_strings;
    const Clock& m_clock;
    AttentionPanel& m_attention;
    StripRow* m_soundRow = nullptr;
    StripRow* m_callRow = nullptr;
    StripRow* m_inUseRow = nullptr;
    StripRow* m_failedRow = nullptr;
    QWidget* m_stateRow;
    StripRow* m_databaseRow;
    StripRow* m_doubtRow;
    QLabel* m_simulation = nullptr;
    QLabel* m_statePicture = nullptr;
    QLabel* m_stateText = nullptr;
    QStringList m_failures; // newest last
};
