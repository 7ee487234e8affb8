#pragma once

#include <QFont>
#include <QList>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QString>
#include <QStringList>
#include <vector>

// A table on paper, or in a PDF: a title and the headings of the columns on each page, and on the first one
// what introduces it. May be used on a thread of its own.
class TablePaper {
public:
    struct Texts {
        QStringList headings;
        QList<int> shares; // of the width for each column, in hundredths
        QString title;
        QStringList introduction; // a line each
        QString page;             // with a place for the number
        QString failure;
    };

    // Raises Error when nothing can be painted on the device, which outlives it.
    TablePaper(QPagedPaintDevice& device, const Texts& texts);

    // As many cells as there are headings.
    void Add(const QStringList& cells, bool bold = false);
    // True unless the device has failed.
    bool End() { return m_painter.end(); }

private:
    void MeasureColumns();
    void BeginPage();
    void DrawIntroduction();
    int HeightOf(const QStringList& cells) const;
    void Draw(const QStringList& cells);

    QPagedPaintDevice& m_device;
    const Texts m_texts;
    QPainter m_painter;
    QFont m_font;
    QFont m_bold;
    std::vector<QRect> m_columns; // left and width
    int m_page = 0;
    int m_y = 0;
};
