#include "mainwindow/frame/FramePanes.h"

#include "core/settings/Settings.h"
#include "mainwindow/bars/CommandBars.h"
#include "mainwindow/bars/StatusBar.h"
#include "mainwindow/frame/MainTabs.h"
#include "mainwindow/frame/PaneLayout.h"
#include "mainwindow/frame/PaneSplitter.h"
#include "mainwindow/frame/StartPanel.h"
#include "mainwindow/frame/WindowPlacement.h"
#include "mainwindow/log/LogPane.h"
#include "mainwindow/send/SendPane.h"
#include "mainwindow/strip/AttentionPanel.h"
#include "mainwindow/strip/LinkStrip.h"

#include <QEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QToolBar>
#include <algorithm>
#include <utility>

namespace {

constexpr int LeastPaneLines = 3;

} // namespace

FramePanes::FramePanes(const Parts& parts) : m_parts(parts)
{
    m_parts.window.installEventFilter(this);
    m_parts.window.centralWidget()->installEventFilter(this);
    connect(&m_parts.strip, &LinkStrip::ContentChanged, this, &FramePanes::Arrange);
    connect(&m_parts.tabs, &MainTabs::TabChanged, this, &FramePanes::Arrange);
    connect(&m_parts.splitter, &PaneSplitter::Dropped, this, &FramePanes::StoreLogWidth);
}

void FramePanes::LoadLogWidth()
{
    m_parts.attempt([this] { m_logWidth = m_parts.settings.LogWidth(); });
}

bool FramePanes::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (watched == m_parts.window.centralWidget()) {
        if (type == QEvent::Resize)
            Arrange();
    } else if (type == QEvent::WindowStateChange || type == QEvent::FontChange) {
        Arrange();
    } else if (type == QEvent::Resize) {
        GoUp();
    }
    return false;
}

void FramePanes::Arrange()
{
    QMainWindow& window = m_parts.window;
    QWidget& area = *window.centralWidget();
    m_parts.bars.AllowFullScreen(m_parts.placement.IsNormal());

    const int barHeight = m_parts.bars.ToolBar().sizeHint().height();
    m_parts.attention.ShortenList(0);
    int stripHeight = m_parts.strip.HeightAt(area.width());
    PaneSizes sizes;
    sizes.toolBarHeight = barHeight + stripHeight;
    sizes.statusBarHeight = m_parts.status.sizeHint().height();
    sizes.tabRowHeight = m_parts.tabs.RowHeight();
    sizes.splitterWidth = PaneSplitter::Width;
    sizes.sendPaneHeight = m_parts.send.PaneHeight();
    sizes.logWidth = m_logWidth;
    // With a large font the strip could push the panes out of a small window: the window grows instead, as
    // far as the screen has room.
    const int room = window.screen()->availableGeometry().height() -
                     (window.frameGeometry().height() - window.height()) - window.menuBar()->height();
    const int leastPane = LeastPaneLines * window.fontMetrics().lineSpacing();
    if (const int missing = LowestClient(sizes, leastPane) - room; missing > 0) {
        m_parts.attention.ShortenList(missing);
        stripHeight = m_parts.strip.HeightAt(area.width());
        sizes.toolBarHeight = barHeight + stripHeight;
    }
    const int lowest = LowestClient(sizes, leastPane);
    const int least = std::clamp(LowestClient(sizes, m_parts.tabs.LeastPaneHeight(leastPane)), lowest,
                                 std::max(lowest, room));
    m_grows = m_grows || (window.isVisible() && least > area.height());
    area.setMinimumHeight(least);
    const QSize client = area.size();
    sizes.client = client;
    const PaneLayout layout = ArrangePanes(sizes);

    m_parts.bars.ToolBar().setGeometry(0, 0, client.width(), barHeight);
    m_parts.strip.setGeometry(0, barHeight, client.width(), stripHeight);
    m_parts.tabs.Place({0, layout.tabStrip.top(), client.width(), sizes.tabRowHeight}, layout.tabPane);
    m_parts.log.setGeometry(layout.log);
    m_parts.splitter.setGeometry(layout.splitter);
    m_parts.splitter.SetRange(layout.tabStripClient);
    m_parts.start.Place(QRect(QPoint(0, sizes.toolBarHeight), QPoint(client.width(), layout.log.bottom())));
    m_parts.send.setGeometry(layout.send);
    m_parts.status.setGeometry(0, client.height() - sizes.statusBarHeight, client.width(),
                               sizes.statusBarHeight);
}

// A window that stands low on the screen and has grown over the edge, since the panes need it, goes up.
void FramePanes::GoUp()
{
    QMainWindow& window = m_parts.window;
    if (!std::exchange(m_grows, false) || !m_parts.placement.IsNormal())
        return;
    const QRect available = window.screen()->availableGeometry();
    const int over = window.frameGeometry().bottom() - available.bottom();
    if (over > 0)
        window.move(window.x(), std::max(available.top(), window.y() - over));
}

void FramePanes::StoreLogWidth()
{
    const int right = m_parts.log.x() + m_parts.log.width();
    m_logWidth = right - (m_parts.splitter.x() + m_parts.splitter.width());
    m_parts.attempt([this] { m_parts.settings.SetLogWidth(m_logWidth); });
    Arrange();
}
