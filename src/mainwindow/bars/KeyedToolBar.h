#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

class QBoxLayout;
class QToolButton;

// A row or column of buttons with pictures. Button "n" of the bar "b" has the object name "b_n". Create it as
// a ToolBarOf, which knows each button by a value of an enumeration.
class KeyedToolBar : public QWidget {
    Q_OBJECT

public:
    enum class Style {
        Plain,   // a click is a command
        Check,   // a click presses or releases
        OneOfAll // exactly one button is pressed, once the first one is
    };

    void AddGap();
    // Keeps the buttons together at the beginning of a bar that is longer than they are.
    void AddStretch();
    // Buttons with no gaps between them and the smallest pictures.
    void SetCompact();
    // First button that can have the focus; null when none can.
    QToolButton* FirstEnabled() const;

Q_SIGNALS:
    void ButtonClicked(int key);

protected:
    KeyedToolBar(const QString& name, QWidget* parent, Qt::Orientation orientation);

    QToolButton* Add(int key, const QString& name, Style style, int toolTip, const QString& picture);
    QToolButton* ButtonOf(int key) const; // null when there is none
    bool IsButtonPressed(int key) const;
    void Press(int key, bool pressed);
    std::optional<int> FirstPressed() const;

    void changeEvent(QEvent* event) override;

private:
    struct KeyedButton {
        int key;
        QToolButton* button;
        Style style;
    };

    const KeyedButton* Find(int key) const;
    void SizeIcons();

    QBoxLayout* m_row;
    std::vector<KeyedButton> m_buttons;
    bool m_compact = false;
};

template <typename Key> class ToolBarOf : public KeyedToolBar {
public:
    ToolBarOf(const QString& name, QWidget* parent, Qt::Orientation orientation = Qt::Horizontal)
        : KeyedToolBar(name, parent, orientation)
    {
    }

    // The picture has the button's name unless another is given; the tip (a catalogue id, 0: none) is filled
    // in with the window's captions.
    QToolButton* AddButton(Key key, const QString& name, Style style, int toolTip,
                           const QString& picture = {})
    {
        return Add(static_cast<int>(key), name, style, toolTip, picture);
    }
    QToolButton* Button(Key key) const { return ButtonOf(static_cast<int>(key)); }

    bool IsPressed(Key key) const { return IsButtonPressed(static_cast<int>(key)); }
    // Shows a button as pressed or not, without its command. Pressing one of OneOfAll releases the others.
    void SetPressed(Key key, bool pressed) { Press(static_cast<int>(key), pressed); }
    // The pressed one of OneOfAll; nothing when there is none.
    std::optional<Key> Pressed() const
    {
        const std::optional<int> key = FirstPressed();
        return key ? std::optional(static_cast<Key>(*key)) : std::nullopt;
    }

    void OnClick(const std::function<void(Key)>& run)
    {
        connect(
            this, &KeyedToolBar::ButtonClicked, this, [run](int key) { run(static_cast<Key>(key)); });
    }
};
