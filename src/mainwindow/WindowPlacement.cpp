#include "mainwindow/WindowPlacement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace {

constexpr int StoredMinimised = 1;
constexpr int StoredMaximised = 2;

bool OnSomeScreen(const QRect& rectangle)
{
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(),
                       [&](const QScreen* screen) { return screen->geometry().intersects(rectangle); });
}

} // namespace

WindowPlacement::WindowPlacement(QWidget& window, Settings& settings) : m_window(window), m_settings(settings)
{
}

void WindowPlacement::RestoreRectangle(const Settings::Placement& placement)
{
    QRect rectangle(placement.x, placement.y, std::max(placement.width, 1), std::max(placement.height, 1));
    if (!OnSomeScreen(rectangle)) {
        rectangle.moveTopLeft(QGuiApplication::primaryScreen()->availableGeometry().topLeft());
    }
    m_window.setWindowState(Qt::WindowNoState);
    SetRectangle(rectangle);
}

void WindowPlacement::RestoreState(const Settings::Placement& placement)
{
    if (placement.windowState == StoredMinimised) {
        m_window.setWindowState(m_window.windowState() | Qt::WindowMinimized);
    } else if (placement.windowState == StoredMaximised) {
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);
    }
}

void WindowPlacement::Save()
{
    // A maximised or minimised window is stored with the rectangle that it returns to.
    QRect rectangle = Rectangle();
    if (m_fullScreen) {
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
    if (m_window.windowState() & Qt::WindowMinimized) {
        placement.windowState = StoredMinimised;
    } else if (m_window.windowState() & Qt::WindowMaximized) {
        placement.windowState = StoredMaximised;
    }
    m_settings.SetWindowPlacement(placement);
}

void WindowPlacement::SetFullScreen(bool on)
{
    const bool wasOn = m_fullScreen;
    m_fullScreen = on;
    if (on) {
        if (!wasOn) {
            m_normalRect = Rectangle();
        }
        m_window.setGeometry(m_window.screen()->geometry());
        m_window.setWindowState(m_window.windowState() | Qt::WindowFullScreen);
    } else if (wasOn) {
        m_window.setWindowState(m_window.windowState() & ~Qt::WindowFullScreen);
        SetRectangle(m_normalRect);
    }
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
