#include "mainwindow/bars/StatusPanel.h"

#include "core/widgets/Icons.h"

#include <QPainter>
#include <algorithm>

namespace {

constexpr int Margin = 6;   // left and right of the text
constexpr int Padding = 4;  // above and below
constexpr int Rounding = 2; // an advance is a rounded fraction

} // namespace

StatusPanel::StatusPanel(const QString& name, QWidget* parent) : QLabel(parent)
{
    setObjectName(name);
    setTextFormat(Qt::PlainText);
}

void StatusPanel::ReserveFor(const QString& text)
{
    m_reserved = text;
    updateGeometry();
}

void StatusPanel::ShowPicture(const QIcon& picture)
{
    m_picture = picture;
    update();
}

QSize StatusPanel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int width = std::max(metrics.horizontalAdvance(text()), metrics.horizontalAdvance(m_reserved));
    return {width + 2 * Margin + Rounding, metrics.height() + 2 * Padding};
}

QSize StatusPanel::minimumSizeHint() const
{
    return {4 * fontMetrics().averageCharWidth(), sizeHint().height()};
}

void StatusPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(width() - 1, Padding, width() - 1, height() - Padding - 1);

    const QRect inside = rect().adjusted(Margin, 0, -Margin, 0);
    if (!m_picture.isNull()) {
        const int edge = SmallIconSize(*this).width();
        QRect place(0, 0, edge, edge);
        place.moveCenter(rect().center());
        m_picture.paint(&painter, place);
        return;
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, inside.width()));
}
