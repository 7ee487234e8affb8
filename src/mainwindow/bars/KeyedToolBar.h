#pragma once

#include <QHash>
#include <QWidget>

class QBoxLayout;
class QToolButton;

// A row or column of buttons with pictures, each known by its key. Button "k" of the bar "b" has the object
// name "b_k".
class KeyedToolBar : public QWidget {
    Q_OBJECT

public:
    enum class Style {
        Plain,   // a click is a command
        Check,   // a click presses and releases
        OneOfAll // exactly one button is pressed, once the first one is
    };

    KeyedToolBar(const QString& name, QWidget* parent, Qt::Orientation orientation = Qt::Horizontal);

    // Picture of the same key unless another is named; the tip (a catalogue id, 0 none) is filled with the
    // window's captions.
    QToolButton* AddButton(const QString& key, Style style, int toolTip, const QString& picture = {});
    void AddGap();
    // Keeps the buttons together at the beginning of a bar that is longer than they are.
    void AddStretch();
    // Buttons without room between them and with the smallest pictures.
    void SetCompact();

    QToolButton* Button(const QString& key) const; // null when there is none
    bool IsPressed(const QString& key) const;
    // Shows a button as pressed or not, without its command. Pressing one of OneOfAll releases the others.
    void SetPressed(const QString& key, bool pressed);
    QString PressedKey() const; // of OneOfAll; empty when none is pressed
    // First button that can have the focus; null when none can.
    QToolButton* FirstEnabled() const;

Q_SIGNALS:
    void ButtonClicked(const QString& key);

protected:
    void changeEvent(QEvent* event) override;

private:
    void SizeIcons();

    QBoxLayout* m_row;
    QList<QToolButton*> m_buttons;
    QHash<QToolButton*, Style> m_styles;
    bool m_compact = false;
};
