#include "mainwindow/frame/WindowPlacement.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <utility>

namespace {

constexpr int StoredMinimised = 1;
constexpr int StoredMaximised = 2;

constexpr int RestTime = 100; // ms without a change after which a window has come to rest
constexpr int MostLooks = 20;

// The first screen that holds a part of the rectangle, or null.
const QScreen* ScreenOf(const QRect& rectangle)
{
    const auto screens = QGuiApplication::screens();
    const auto found = std::find_if(screens.begin(), screens.end(), [&](const QScreen* screen) {
        return screen->geometry().intersects(rectangle);
    });
    return found == screens.end() ? nullptr : *found;
}

} // namespace

WindowPlacement::WindowPlacement(QWidget& window, Settings& settings) : m_window(window), m_settings(settings)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(RestTime);
    connect(&m_rest, &QTimer::timeout, this, &WindowPlacement::ComeToRest);
    m_window.installEventFilter(this);
}

void WindowPlacement::RestoreRectangle(const Settings::Placement& placement)
{
    QRect rectangle(placement.x, placement.y, std::max(placement.width, 1), std::max(placement.height, 1));
    const QScreen* screen = ScreenOf(rectangle);
    const QRect available = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    const QSize size = rectangle.size().boundedTo(available.size());
    if (!screen || size != rectangle.size())
        rectangle.moveTopLeft(available.topLeft());
    rectangle.setSize(size);
    m_window.setWindowState(Qt::WindowNoState);
    SetRectangle(rectangle);
    m_normalRect = rectangle;
    Await(Awaited::FirstPlace);
}

void WindowPlacement::RestoreState(const Settings::Placement& placement)
{
    if (placement.windowState == StoredMinimised)
        m_window.setWindowState(m_window.windowState() | Qt::WindowMinimized);
    else if (placement.windowState == StoredMaximised)
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);
}

void WindowPlacement::Save()
{
    // A maximised or minimised window is stored with the rectangle that it returns to.
    QRect rectangle = Rectangle();
    if (m_fullScreen || m_awaited == Awaited::NormalRectangle) {
        rectangle = m_normalRect;
    } else if (!IsNormal() && m_window.normalGeometry().isValid()) {
        const QPoint frame = m_window.geometry().topLeft() - m_window.pos();
        rectangle = m_window.normalGeometry().translated(-frame);
    }
    Settings::Placement placement;
    placement.x = rectangle.x();
    placement.y = rectangle.y();
    placement.width = rectangle.width();
    placement.height = rectangle.height();
    placement.fullScreen = m_fullScreen;
    if (m_window.windowState() & Qt::WindowMinimized)
        placement.windowState = StoredMinimised;
    else if (m_window.windowState() & Qt::WindowMaximized)
        placement.windowState = StoredMaximised;
    m_settings.SetWindowPlacement(placement);
}

void WindowPlacement::SetFullScreen(bool on)
{
    const bool wasOn = m_fullScreen;
    m_fullScreen = on;
    if (on) {
        if (!wasOn && m_awaited != Awaited::NormalRectangle) {
            m_normalRect = Rectangle();
            m_hadFrame = HasFrame() || !m_window.isVisible();
        }
        m_window.setWindowState(m_window.windowState() | Qt::WindowFullScreen);
        Await(Awaited::FullScreen);
    } else if (wasOn) {
        m_window.setWindowState(m_window.windowState() & ~Qt::WindowFullScreen);
        Await(Awaited::NormalRectangle);
    }
}

// Any further change postpones the check.
bool WindowPlacement::eventFilter(QObject* watched, QEvent* event)
{
    if (m_awaited != Awaited::Nothing &&
        (event->type() == QEvent::Move || event->type() == QEvent::Resize || event->type() == QEvent::Show ||
         event->type() == QEvent::WindowStateChange))
        m_rest.start();
    return QObject::eventFilter(watched, event);
}

void WindowPlacement::Await(Awaited awaited)
{
    m_awaited = awaited;
    m_looks = 0;
    m_rest.start();
}

void WindowPlacement::ComeToRest()
{
    const bool frameMissing = m_awaited == Awaited::NormalRectangle && m_hadFrame && !HasFrame();
    if ((!m_window.isVisible() || frameMissing) && ++m_looks < MostLooks) {
        m_rest.start();
        return;
    }
    switch (std::exchange(m_awaited, Awaited::Nothing)) {
    case Awaited::FullScreen:
        if (m_window.size() != m_window.screen()->size())
            m_window.setGeometry(m_window.screen()->geometry()); // there is no window manager
        break;
    case Awaited::NormalRectangle:
        if (IsNormal() && Rectangle() != m_normalRect)
            SetRectangle(m_normalRect);
        break;
    case Awaited::FirstPlace:
        MendFirstPlace();
        break;
    case Awaited::Nothing:
        break;
    }
}

// A window that grew to its minimum size before it had its frame is out of place, or extends beyond the
// screen.
void WindowPlacement::MendFirstPlace()
{
    if (m_fullScreen || !IsNormal())
        return;
    const QRect available = m_window.screen()->availableGeometry();
    const QSize frame = m_window.frameGeometry().size() - m_window.size();
    QRect rectangle(m_normalRect.topLeft(), m_window.size().boundedTo(available.size() - frame));
    if (rectangle.size() != m_normalRect.size()) {
        const QPoint last = available.bottomRight() - QRect({}, rectangle.size() + frame).bottomRight();
        rectangle.moveTo(std::max(std::min(rectangle.x(), last.x()), available.x()),
                         std::max(std::min(rectangle.y(), last.y()), available.y()));
    }
    if (rectangle != Rectangle())
        SetRectangle(rectangle);
}

bool WindowPlacement::HasFrame() const
{
    return m_window.frameGeometry() != m_window.geometry();
}

bool WindowPlacement::IsNormal() const
{
    return m_fullScreen || !(m_window.windowState() & (Qt::WindowMinimized | Qt::WindowMaximized));
}

QRect WindowPlacement::Rectangle() const
{
    return {m_window.pos(), m_window.size()};
}

void WindowPlacement::SetRectangle(const QRect& rectangle)
{
    m_window.resize(rectangle.size());
    m_window.move(rectangle.topLeft());
}
