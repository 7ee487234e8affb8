#pragma once

#include <QRect>

// What the places of the panes depend on. All lengths are device-independent pixels.
struct PaneSizes {
    QSize client;          // of the window, without its menu bar
    int toolBarHeight = 0; // with what is shown beneath it
    int statusBarHeight = 0;
    int tabRowHeight = 0; // of the tab strip; below it is its client area
    int splitterWidth = 0;
    int sendPaneHeight = 0;
    double logWidth = 0;
};

struct PaneLayout {
    QRect tabStrip;       // with its client area
    QRect tabStripClient; // what is left for the panes
    QRect log;
    QRect splitter;
    QRect tabPane; // the same for all three
    QRect send;
};

// Where the panes go. A stored log width that the window has no room for is reduced until it fits, so that
// the splitter can always be reached. Never gives a negative width or height.
PaneLayout ArrangePanes(const PaneSizes& sizes);

// The client height at which the panes above the send pane still have the given height.
int LowestClient(const PaneSizes& sizes, int paneHeight);

// Left edge of the splitter for a horizontal mouse position: always inside the client area.
int SplitterLeft(int mouse, const QRect& tabStripClient, int splitterWidth);
