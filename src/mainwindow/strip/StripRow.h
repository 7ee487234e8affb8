#pragma once

#include <QColor>
#include <QWidget>
#include <chrono>
#include <functional>

class QHBoxLayout;
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

    QPushButton& AddButton(const QString& name, const QString& caption, const std::function<void()>& press);
    void SetBold();
    // An empty text hides the row.
    void Say(const QString& text);

protected:
    void moveEvent(QMoveEvent* event) override;

private:
    const Clock& m_clock;
    QHBoxLayout* m_row;
    QLabel* m_text;
    std::chrono::milliseconds m_changed{0};
};

// Parts of a row that is built differently.
QLabel* NewStripText(const QString& name, QWidget* parent);
QLabel* NewStripPicture(const QString& key, QWidget* parent);
QHBoxLayout* NewStripLayout(QWidget* row);
