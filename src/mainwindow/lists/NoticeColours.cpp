#include "mainwindow/lists/NoticeColours.h"

#include <QPalette>
#include <QWidget>

void NoticeColours::Colour(QWidget& widget, QRgb back, QRgb text)
{
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, QColor(back));
    palette.setColor(QPalette::WindowText, QColor(text));
    widget.setPalette(palette);
    widget.setAutoFillBackground(true);
}
