#pragma once

#include <QObject>
#include <QQueue>
#include <QString>

struct IPrompt;

// The boxes that radio events raise. They are queued and shown one at a time from the event loop, so that
// events are still handled and recorded while a box is open.
class RadioBoxes : public QObject {
    Q_OBJECT

public:
    explicit RadioBoxes(IPrompt& prompt);

    void ShowWarning(const QString& text);

private:
    void ShowNext();

    IPrompt& m_prompt;
    QQueue<QString> m_waiting;
    bool m_open = false;
};
