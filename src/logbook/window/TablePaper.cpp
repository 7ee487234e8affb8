#include "logbook/window/TablePaper.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"

#include <QFontMetrics>
#include <algorithm>

namespace {

constexpr int PointSize = 8;
constexpr int CellFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextWrapAnywhere;

} // namespace

TablePaper::TablePaper(QPagedPaintDevice& device, const Texts& texts) : m_device(device), m_texts(texts)
{
    if (!m_painter.begin(&device))
        throw Error(ErrorCode::General, texts.failure);
    m_font.setPointSize(PointSize);
    m_bold = m_font;
    m_bold.setBold(true);
    MeasureColumns();
    BeginPage();
}

void TablePaper::MeasureColumns()
{
    const int width = m_painter.viewport().width();
    const int gap = QFontMetrics(m_font, &m_device).averageCharWidth();
    int left = 0;
    for (const int share : m_texts.shares) {
        const int right = left + width * share / 100;
        m_columns.emplace_back(left, 0, right - left - gap, 0);
        left = right;
    }
}

void TablePaper::BeginPage()
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
    if (m_page == 1)
        DrawIntroduction();
    m_painter.setFont(m_bold);
    Draw(m_texts.headings);
    m_painter.drawLine(0, m_y, line.width(), m_y);
    m_y += line.height() / 3;
    m_painter.setFont(m_font);
}

int TablePaper::HeightOf(const QStringList& cells) const
{
    int height = 0;
    for (qsizetype column = 0; column < m_texts.shares.size(); ++column) {
        const QRect& place = m_columns[static_cast<std::size_t>(column)];
        constexpr int Unlimited = 1'000'000;
        height = std::max(height, m_painter.fontMetrics()
                                      .boundingRect(0, 0, place.width(), Unlimited, CellFlags, cells[column])
                                      .height());
    }
    return height;
}

void TablePaper::Draw(const QStringList& cells)
{
    const int height = HeightOf(cells);
    for (qsizetype column = 0; column < m_texts.shares.size(); ++column) {
        const QRect& place = m_columns[static_cast<std::size_t>(column)];
        m_painter.drawText(QRect(place.left(), m_y, place.width(), height), CellFlags, cells[column]);
    }
    m_y += height;
}

void TablePaper::DrawIntroduction()
{
    m_painter.setFont(m_font);
    const int width = m_painter.viewport().width();
    for (const QString& line : m_texts.introduction) {
        constexpr int Unlimited = 1'000'000;
        const QRect place = m_painter.fontMetrics().boundingRect(0, 0, width, Unlimited, CellFlags, line);
        m_painter.drawText(QRect(0, m_y, width, place.height()), CellFlags, line);
        m_y += place.height();
    }
    if (!m_texts.introduction.isEmpty())
        m_y += m_painter.fontMetrics().lineSpacing();
}

void TablePaper::Add(const QStringList& cells, bool bold)
{
    const QFont& font = bold ? m_bold : m_font;
    m_painter.setFont(font);
    if (m_y + HeightOf(cells) > m_painter.viewport().height()) {
        BeginPage();
        m_painter.setFont(font);
    }
    Draw(cells);
}
