#include "logbook/window/LogPaper.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"

#include <QFontMetrics>
#include <algorithm>

namespace {

constexpr int PointSize = 8;
// Shares of the width, in the order of the columns: nobody needs the console's whole identity on paper.
constexpr int Shares[] = {15, 5, 8, 15, 15, 28, 8, 6};
constexpr int CellFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextWrapAnywhere;

} // namespace

LogPaper::LogPaper(QPagedPaintDevice& device, const Texts& texts) : m_device(device), m_texts(texts)
{
    if (!m_painter.begin(&device))
        throw Error(ErrorCode::General, texts.failure);
    m_font.setPointSize(PointSize);
    m_bold = m_font;
    m_bold.setBold(true);
    MeasureColumns();
    BeginPage();
}

void LogPaper::MeasureColumns()
{
    const int width = m_painter.viewport().width();
    const int gap = QFontMetrics(m_font, &m_device).averageCharWidth();
    int left = 0;
    for (const int share : Shares) {
        const int right = left + width * share / 100;
        m_columns.emplace_back(left, 0, right - left - gap, 0);
        left = right;
    }
}

void LogPaper::BeginPage()
{
    if (m_page > 0)
        m_device.newPage();
    ++m_page;
    m_y = 0;
    const QRect line(0, 0, m_painter.viewport().width(), QFontMetrics(m_bold, &m_device).lineSpacing());
    m_painter.setFont(m_bold);
    m_painter.drawText(line, Qt::AlignLeft, m_texts.title);
    m_painter.drawText(line, Qt::AlignRight, FormatMessage(m_texts.page, {QString::number(m_page)}));
    m_y = 2 * line.height();
    QStringList headings;
    for (int column = 0; column < LogbookLine::Columns; ++column)
        headings.append(m_texts.line.Heading(column));
    Draw(headings);
    m_painter.drawLine(0, m_y, line.width(), m_y);
    m_y += line.height() / 3;
    m_painter.setFont(m_font);
}

int LogPaper::HeightOf(const QStringList& cells) const
{
    int height = 0;
    for (int column = 0; column < LogbookLine::Columns; ++column) {
        const QRect& place = m_columns[static_cast<std::size_t>(column)];
        constexpr int Unlimited = 1'000'000;
        height = std::max(height, m_painter.fontMetrics()
                                      .boundingRect(0, 0, place.width(), Unlimited, CellFlags, cells[column])
                                      .height());
    }
    return height;
}

void LogPaper::Draw(const QStringList& cells)
{
    const int height = HeightOf(cells);
    for (int column = 0; column < LogbookLine::Columns; ++column) {
        const QRect& place = m_columns[static_cast<std::size_t>(column)];
        m_painter.drawText(QRect(place.left(), m_y, place.width(), height), CellFlags, cells[column]);
    }
    m_y += height;
}

void LogPaper::Add(const dao::EventRecord& record, const LogFacts& facts)
{
    QStringList cells;
    for (int column = 0; column < LogbookLine::Columns; ++column)
        cells.append(m_texts.line.Cell(record, facts, column));
    m_painter.setFont(facts.IsEmergency(record) ? m_bold : m_font);
    if (m_y + HeightOf(cells) > m_painter.viewport().height()) {
        BeginPage();
        m_painter.setFont(facts.IsEmergency(record) ? m_bold : m_font);
    }
    Draw(cells);
}
