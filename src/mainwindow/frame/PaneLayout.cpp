#include "mainwindow/frame/PaneLayout.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int Margin = 2;

QRect Place(int left, int top, int width, int height)
{
    return {left, top, std::max(width, 0), std::max(height, 0)};
}

} // namespace

PaneLayout ArrangePanes(const PaneSizes& sizes)
{
    PaneLayout layout;
    layout.tabStrip = Place(0, sizes.toolBarHeight, sizes.client.width(),
                            sizes.client.height() - sizes.toolBarHeight - sizes.statusBarHeight);
    layout.tabStripClient = Place(0, sizes.toolBarHeight + sizes.tabRowHeight, sizes.client.width(),
                                  layout.tabStrip.height() - sizes.tabRowHeight);

    const int left = layout.tabStripClient.left();
    const int top = layout.tabStripClient.top();
    const int width = layout.tabStripClient.width();
    const int height = layout.tabStripClient.height();

    const int widestLog = std::max(width - sizes.splitterWidth, 0);
    const int logWidth =
        static_cast<int>(std::lround(std::clamp(sizes.logWidth, 0.0, static_cast<double>(widestLog))));
    layout.log =
        Place(left + width - logWidth, top + Margin, logWidth, height - 3 * Margin - sizes.sendPaneHeight);
    layout.splitter = Place(layout.log.left() - sizes.splitterWidth, layout.log.top(), sizes.splitterWidth,
                            layout.log.height());
    layout.tabPane = Place(left, top + Margin, width - logWidth - sizes.splitterWidth, layout.log.height());
    layout.send =
        Place(left, layout.tabPane.top() + layout.tabPane.height() + 2 * Margin, width, sizes.sendPaneHeight);
    return layout;
}

int LowestClient(const PaneSizes& sizes, int paneHeight)
{
    return sizes.toolBarHeight + sizes.tabRowHeight + paneHeight + 3 * Margin + sizes.sendPaneHeight +
           sizes.statusBarHeight;
}

int SplitterLeft(int mouse, const QRect& tabStripClient, int splitterWidth)
{
    const int last = tabStripClient.left() + tabStripClient.width() - splitterWidth;
    return std::clamp(mouse, tabStripClient.left(), std::max(last, tabStripClient.left()));
}
