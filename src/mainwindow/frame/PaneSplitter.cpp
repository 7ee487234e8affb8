#include "mainwindow/frame/PaneSplitter.h"

#include "mainwindow/frame/PaneLayout.h"

#include <QMouseEvent>

PaneSplitter::PaneSplitter(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picHPaneResize"));
    setCursor(Qt::SplitHCursor);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Button);
}

void PaneSplitter::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_dragging = true;
        setBackgroundRole(QPalette::Highlight);
        raise();
    }
}

void PaneSplitter::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging)
        Follow(event->position().toPoint());
}

void PaneSplitter::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && m_dragging) {
        m_dragging = false;
        setBackgroundRole(QPalette::Button);
        Q_EMIT Dropped();
    }
}

void PaneSplitter::Follow(const QPoint& mouse)
{
    move(SplitterLeft(mapToParent(mouse).x(), m_area, width()), y());
}
