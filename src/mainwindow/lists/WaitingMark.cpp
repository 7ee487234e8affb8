#include "mainwindow/lists/WaitingMark.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

QVariant WaitingLook(int role)
{
    if (role == Qt::ForegroundRole)
        return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
    QFont font;
    font.setItalic(true);
    font.setResolveMask(QFont::StyleResolved); // the rest is the list's
    return font;
}
