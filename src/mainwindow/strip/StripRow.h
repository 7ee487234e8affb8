#pragma once

#include <QColor>
#include <QWidget>
#include <chrono>
#include <functional>

class QHBoxLayout;
class QVBoxLayout;
class QLabel;
class QPushButton;
struct Clock;

// One row of the strip under the toolbar: a picture, a sentence, and buttons after it. Hidden while it has
// nothing to say. Its buttons do nothing for a second after its text has changed or it has moved: such a
// click was meant for what was there before.
class StripRow : public QWidget {
    Q_OBJECT

public:
    static constexpr int SideMargin = 8; // pixels
    static constexpr int RowMargin = 3;

    // The object names are the topic with "Row" and "Text" appended. The clock must outlive it.
    StripRow(const QString& topic, const QString& picture, QRgb back, QRgb text, const Clock& clock,
             QWidget* parent);

    // Its buttons stand in a line of their own below the sentence; before the first is added.
    void PutButtonsBelow();
    QPushButton& AddButton(const QString& name, const QString& caption, const std::function<void()>& press);
    void SetBold(bool on);
    // An empty text hides the row.
    void Say(const QString& text) { SayOf(text, text); }
    // The same, about something: the buttons are safe as long as they are about the same, whatever the text.
    void SayOf(const QString& subject, const QString& text);
    // The same, of what the operator has just asked to see: its buttons work at once.
    void SayAsked(const QString& subject, const QString& text);

protected:
    void moveEvent(QMoveEvent* event) override;

private:
    const Clock& m_clock;
    QVBoxLayout* m_lines;
    QHBoxLayout* m_row;
    QHBoxLayout* m_buttons;
    QLabel* m_text;
    QString m_subject;
    std::chrono::milliseconds m_changed{0};
};

// Parts of a row that is built differently.
QLabel* NewStripText(const QString& name, QWidget* parent);
QLabel* NewStripPicture(const QString& key, QWidget* parent);
QHBoxLayout* NewStripLayout(QWidget* row);
