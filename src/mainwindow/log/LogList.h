#pragma once

#include <QTreeView>

class LogModel;

// "lvLog": the lines of the message log in a fixed-pitch font. Its column is as wide as its widest line, and
// at least as wide as the list. Copying takes all selected lines, as they are shown.
class LogList : public QTreeView {
    Q_OBJECT

public:
    static constexpr int FontSteps = 5;

    LogList(LogModel& model, QWidget* parent);

    // 0 is the smallest size; a step out of range counts as the nearest one.
    void SetFontStep(int step);
    // Call these after lines were added, and after the lines were replaced.
    void WidenFor(int row);
    void Measure();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void FitColumn();
    void CopySelected() const;

    int m_contentWidth = 0; // pixels of the widest line
};
