#include "tour/TourPicture.h"

#include <QApplication>
#include <QMainWindow>
#include <QPainter>
#include <QWidget>
#include <algorithm>

namespace {

constexpr int TitleHeight = 26;
constexpr int Border = 1;
constexpr int Margin = 12;
const QColor Desktop(0x3c, 0x48, 0x57);
const QColor TitleColor(0x22, 0x2b, 0x36);

bool HasTitle(const QWidget* window)
{
    return window->windowType() != Qt::Popup && window->windowType() != Qt::ToolTip;
}

QRect FrameOf(const QWidget* window)
{
    const QRect inner(window->pos(), window->size());
    return HasTitle(window) ? inner.adjusted(-Border, -TitleHeight, Border, Border) : inner;
}

// Bottom first: the main window, other windows, dialogs, menus.
int Layer(const QWidget* window)
{
    if (!HasTitle(window))
        return 4;
    if (window == QApplication::activeModalWidget())
        return 3;
    if (window->windowFlags().testFlag(Qt::WindowStaysOnTopHint))
        return 2;
    return qobject_cast<const QMainWindow*>(window) ? 0 : 1;
}

void PaintWindow(QPainter& painter, QWidget* window)
{
    const QRect frame = FrameOf(window);
    if (HasTitle(window)) {
        painter.fillRect(frame, TitleColor);
        painter.setPen(Qt::white);
        QFont font = QApplication::font();
        font.setBold(true);
        painter.setFont(font);
        painter.drawText(QRect(frame.topLeft(), QSize(frame.width(), TitleHeight)).adjusted(10, 0, -10, 0),
                         Qt::AlignVCenter | Qt::AlignLeft, window->windowTitle());
    }
    painter.drawPixmap(window->pos(), window->grab());
}

} // namespace

QImage TakeTourPicture()
{
    QWidgetList windows;
    QRect area;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible())
            continue;
        windows.append(window);
        area |= FrameOf(window);
    }
    std::stable_sort(windows.begin(), windows.end(),
                     [](const QWidget* a, const QWidget* b) { return Layer(a) < Layer(b); });
    area.adjust(-Margin, -Margin, Margin, Margin);
    QImage picture(area.size(), QImage::Format_RGB32);
    picture.fill(Desktop);
    QPainter painter(&picture);
    painter.translate(-area.topLeft());
    for (QWidget* window : windows)
        PaintWindow(painter, window);
    return picture;
}
