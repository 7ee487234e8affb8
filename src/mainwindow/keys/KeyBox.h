#pragma once

#include <QKeySequence>
#include <QLineEdit>

// Shows the key that is pressed in it, whatever that would do elsewhere. Tab, Enter and Esc keep their
// meaning, so that nobody is caught in it.
class KeyBox : public QLineEdit {
    Q_OBJECT

public:
    explicit KeyBox(QWidget* parent = nullptr);

    QKeySequence Key() const { return m_key; } // empty: none
    void Show(const QKeySequence& key);

Q_SIGNALS:
    void KeyPressed();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QKeySequence m_key;
};
