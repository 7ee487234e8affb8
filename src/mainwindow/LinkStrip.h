#pragma once

#include "radio/LinkStatus.h"

#include <QDateTime>
#include <QWidget>
#include <vector>

class QLabel;
class QPushButton;
struct IStringSource;

// The strip under the toolbar: state of the radio link, the word SIMULATION while the radio is a simulated
// one, emergency calls until the operator has dismissed each, and a numbering that does not fit the radio
// until it does or is dismissed. It takes no room when it has nothing to say.
class LinkStrip : public QWidget {
    Q_OBJECT

public:
    LinkStrip(const IStringSource& strings, QWidget* parent);

    void ShowLink(const LinkStatus& status);
    // The newest call is shown, with the number of other parties whose call was not dismissed yet. A party
    // that calls again takes the place of its earlier call.
    void ShowEmergency(const QString& party, const QDateTime& time);
    // The first one is shown; none when they are over.
    void ShowDoubts(const QStringList& doubts);

    // A database server that does not answer, and how many log records wait for it.
    void ShowDatabase(bool away, int waiting);

    // Height that its content needs at a width; 0 without content.
    int HeightAt(int width) const;

Q_SIGNALS:
    // The height that the strip needs may have changed.
    void ContentChanged();

private:
    struct Emergency {
        QString party;
        QDateTime time;
    };

    QWidget* BuildStateRow();
    QWidget* BuildEmergencyRow();
    QWidget* BuildDoubtRow();
    QWidget* BuildDatabaseRow();
    void Dismiss();
    void ShowNewestEmergency();

    const IStringSource& m_strings;
    QWidget* m_emergencyRow = nullptr;
    QLabel* m_emergencyText = nullptr;
    QPushButton* m_dismiss = nullptr;
    QWidget* m_doubtRow = nullptr;
    QLabel* m_doubtText = nullptr;
    QWidget* m_databaseRow = nullptr;
    QLabel* m_databaseText = nullptr;
    QWidget* m_stateRow = nullptr;
    QLabel* m_simulation = nullptr;
    QLabel* m_statePicture = nullptr;
    QLabel* m_stateText = nullptr;
    std::vector<Emergency> m_emergencies; // newest last
};
