#pragma once

#include <QObject>

class KeyBindings;
class QKeyEvent;
class QWidget;

// The keys that the main window sees before its controls: those for the tabs, the coding and what waits, and
// the second ones beside F1, F5 and Enter.
class FrameKeys : public QObject {
    Q_OBJECT

public:
    // Watches the keys of this window as long as it lives; becomes its child. The keys must outlive it.
    FrameKeys(QWidget& window, const KeyBindings& keys);

Q_SIGNALS:
    void NextTab();
    void PreviousTab();
    void EncodingChosen(bool eightBit);
    void AttentionRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool Handle(QObject* target, const QKeyEvent& key);
    static void PassOn(QObject& target, const QKeyEvent& pressed, QKeyCombination as);

    QWidget& m_window;
    const KeyBindings& m_keys;
};
