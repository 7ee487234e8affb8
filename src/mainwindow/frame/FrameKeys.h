#pragma once

#include <QObject>

class QKeyEvent;
class QWidget;

// The keys that the main window sees before its controls: Ctrl+Tab, Ctrl+Shift+Tab, Alt+7, Alt+8 and F11.
class FrameKeys : public QObject {
    Q_OBJECT

public:
    // Watches the keys of this window as long as it lives; becomes its child.
    explicit FrameKeys(QWidget& window);

Q_SIGNALS:
    void NextTab();
    void PreviousTab();
    void EncodingChosen(bool eightBit);
    void AttentionRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool Handle(const QKeyEvent& key);

    QWidget& m_window;
};
