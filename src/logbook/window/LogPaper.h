#pragma once

#include "logbook/window/LogbookLine.h"

#include <QFont>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QString>
#include <QStringList>
#include <vector>

// Lines of the log on paper, or in a PDF: a title and the headings of the columns on each page. May be used
// on a thread of its own.
class LogPaper {
public:
    struct Texts {
        LogbookLine line;
        QString title;
        QString page; // with a place for the number
        QString failure;
    };

    // Raises Error when nothing can be painted on the device, which outlives it.
    LogPaper(QPagedPaintDevice& device, const Texts& texts);

    void Add(const dao::EventRecord& record, const LogFacts& facts);
    // True unless the device has failed.
    bool End() { return m_painter.end(); }

private:
    void MeasureColumns();
    void BeginPage();
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
