#pragma once

#include <QObject>
#include <QQueue>
#include <QString>

struct IPrompt;

// Boxes that radio events raise: shown one at a time from the event loop, in order, the rest queued, so that
// events go on being handled and recorded while a box is open.
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
