#pragma once

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <stdexcept>

// Drives dialogs by object names, as somebody at the keyboard would.
namespace driver {

// A child by name. Raises with the names that are there when there is none.
template <typename T> T& Child(QWidget& parent, const QString& name)
{
    if (auto* child = parent.findChild<T*>(name))
        return *child;
    std::string names;
    for (const QWidget* widget : parent.findChildren<QWidget*>())
        names += " " + widget->objectName().toStdString();
    throw std::runtime_error("no child " + name.toStdString() + " among" + names);
}

inline void Type(QWidget& parent, const QString& name, const QString& text)
{
    auto& field = Child<QWidget>(parent, name);
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, text);
}

inline void Click(QWidget& parent, const QString& name)
{
    auto& widget = Child<QWidget>(parent, name);
    if (!widget.isVisible() || !widget.isEnabled())
        ADD_FAILURE() << name.toStdString() << " cannot be clicked";
    // Radio buttons and check boxes react to their indicator and text, which begin at the left.
    const QPoint place(std::min(10, widget.width() / 2), widget.height() / 2);
    QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier, place);
}

inline QWidget* VisibleWindow(const QString& name)
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == name && window->isVisible())
            return window;
    }
    return nullptr;
}

// Runs `act` once when a window of that name has appeared, from the event loop: to be made before the call
// that shows the window and returns when it is closed. Fails the test when the window has not come by the
// object's end; one that does not come in time while another dialog is open closes that dialog, so that no
// test hangs.
class WhenShown {
public:
    WhenShown(const QString& name, std::function<void(QWidget&)> act) : m_name(name), m_act(std::move(act))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Look(); });
        m_timer.start(1);
    }
    WhenShown(const WhenShown&) = delete;
    WhenShown& operator=(const WhenShown&) = delete;
    ~WhenShown()
    {
        if (m_timer.isActive())
            ADD_FAILURE() << "no window " << m_name.toStdString();
    }

private:
    void Look()
    {
        if (QWidget* window = VisibleWindow(m_name)) {
            m_timer.stop();
            Act(*window);
        } else if (std::chrono::steady_clock::now() > m_deadline) {
            if (QWidget* modal = QApplication::activeModalWidget())
                modal->close();
        }
    }

    void Act(QWidget& window)
    {
        try {
            m_act(window);
        } catch (const std::exception& failure) {
            ADD_FAILURE() << m_name.toStdString() << ": " << failure.what();
            window.close();
        }
    }

    QString m_name;
    std::function<void(QWidget&)> m_act;
    QTimer m_timer;
    std::chrono::steady_clock::time_point m_deadline =
        std::chrono::steady_clock::now() + std::chrono::seconds(20);
};

} // namespace driver
