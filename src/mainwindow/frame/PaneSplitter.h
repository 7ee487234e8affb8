#pragma once

#include <QWidget>

// "picHPaneResize": the bar between the left-hand pane and the log, dragged with the left mouse button.
class PaneSplitter : public QWidget {
    Q_OBJECT

public:
    explicit PaneSplitter(QWidget* parent);

    // Device-independent pixels.
    static constexpr int Width = 6;

    // The area of the parent in which it may be dragged.
    void SetRange(const QRect& area) { m_area = area; }
    bool SplitterDragging() const { return m_dragging; }

Q_SIGNALS:
    // The mouse was released; the splitter stands where it was dragged to.
    void Dropped();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void Follow(const QPoint& mouse);

    QRect m_area;
    bool m_dragging = false;
};
