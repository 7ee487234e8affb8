#pragma once

#include <QColor>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;

// One row of the strip under the toolbar: a picture, a sentence, and buttons behind it. Hidden while it has
// nothing to say.
class StripRow : public QWidget {
    Q_OBJECT

public:
    static constexpr int SideMargin = 8; // pixels
    static constexpr int RowMargin = 3;

    // The object names are the topic with "Row" and "Text" behind.
    StripRow(const QString& topic, const QString& picture, QRgb back, QRgb text, QWidget* parent);

    QPushButton& AddButton(const QString& name, const QString& caption);
    void SetBold();
    // An empty text hides the row.
    void Say(const QString& text);

private:
    QHBoxLayout* m_row;
    QLabel* m_text;
};

// Parts of a row that is built otherwise.
QLabel* NewStripText(const QString& name, QWidget* parent);
QLabel* NewStripPicture(const QString& key, QWidget* parent);
QHBoxLayout* NewStripLayout(QWidget* row);
