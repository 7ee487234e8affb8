#include "core/desktop/Waiting.h"

#include "core/base/Clock.h"
#include "core/desktop/WaitSign.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/TextIds.h"

#include <QApplication>
#include <QEventLoop>
#include <QMainWindow>
#include <QSocketNotifier>
#include <algorithm>
#include <utility>

namespace {

using std::chrono::milliseconds;

// What is over within this needs no event loop; nobody notices the wait.
constexpr milliseconds Unnoticed{25};
constexpr milliseconds SignAfter{300};
// Nobody has looked at the sign in less: a click or an Esc was meant for something else.
constexpr milliseconds LookingTime{1000};
constexpr milliseconds LastWait{1000};
constexpr milliseconds LongestUnasked{2000};
constexpr milliseconds Tick{50};

// The window that the operator works in. Never that of a radio call.
QWidget* Owner()
{
    QWidget* owner = QApplication::activeModalWidget();
    if (owner)
        return owner;
    owner = QApplication::activeWindow();
    if (owner && !owner->windowFlags().testFlag(Qt::WindowStaysOnTopHint))
        return owner;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && qobject_cast<QMainWindow*>(window) != nullptr)
            return window;
    return nullptr;
}

} // namespace

Waiting::Waiting(const IStringSource& strings, const Clock& clock) : m_strings(strings), m_clock(clock)
{
    m_tick.setInterval(Tick);
    connect(&m_tick, &QTimer::timeout, this, &Waiting::Look);
    m_lull.setSingleShot(true);
    m_lull.setInterval(0);
    connect(&m_lull, &QTimer::timeout, this, &Waiting::EndOperation);
    connect(&m_gate, &InputGate::EscapePressed, this, [this] {
        if (MayGiveUp())
            GiveUp();
    });
    dao::Patience::Use(this);
}

Waiting::~Waiting()
{
    dao::Patience::Use(nullptr);
    delete m_sign;
}

milliseconds Waiting::Spent() const
{
    return m_clock.Ticks() - *m_since;
}

dao::Patience::End Waiting::Await(const Wait& wait)
{
    if (m_inWait) // of a session that belongs to somebody else
        return AwaitInSystem(wait);
    if (m_last && m_clock.Ticks() >= *m_last)
        return End::GivenUp;
    m_lull.stop();
    if (!m_since) {
        m_since = m_clock.Ticks();
        m_unnoticed.setRemainingTime(Unnoticed, Qt::PreciseTimer);
    }
    Wait rest = wait;
    Wait first = wait;
    first.limit = std::max(milliseconds{1}, milliseconds{m_unnoticed.remainingTime()});
    const bool isShort = wait.limit.count() > 0 && wait.limit <= first.limit;
    End end = AwaitInSystem(isShort ? wait : first);
    if (end == End::TimeOver && !isShort) {
        if (rest.limit.count() > 0)
            rest.limit -= first.limit;
        end = AwaitInLoop(rest);
    }
    m_lull.start();
    return end;
}

dao::Patience::End Waiting::AwaitInLoop(const Wait& wait)
{
    m_wait = wait;
    m_end.reset();
    m_inWait = true;
    m_gate.Close();
    m_gate.LetWindowsClose(false);
    Q_EMIT WaitingChanged(true);
    QEventLoop loop;
    m_loop = &loop;
    std::vector<std::unique_ptr<QSocketNotifier>> notifiers;
    const auto watch = [&](QSocketNotifier::Type type) {
        notifiers.push_back(std::make_unique<QSocketNotifier>(wait.socket, type));
        connect(notifiers.back().get(), &QSocketNotifier::activated, &loop,
                [this, notifier = notifiers.back().get()] {
                    notifier->setEnabled(false);
                    Finish(End::Ready);
                });
    };
    if (wait.socket >= 0 && wait.ready != Wait::Ready::Writable)
        watch(QSocketNotifier::Read);
    if (wait.socket >= 0 && wait.ready != Wait::Ready::Readable)
        watch(QSocketNotifier::Write);
    if (wait.limit.count() > 0)
        QTimer::singleShot(wait.limit, Qt::PreciseTimer, &loop, [this] { Finish(End::TimeOver); });
    m_tick.start();
    Look();
    while (!m_end) {
        const auto events = m_sign ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents;
        if (loop.exec(events) < 0)
            m_end = End::GivenUp; // the program ends
    }
    m_loop = nullptr;
    if (!m_port)
        m_tick.stop();
    m_inWait = false;
    m_gate.LetWindowsClose(m_port == nullptr);
    Q_EMIT WaitingChanged(false);
    return *m_end;
}

std::shared_ptr<void> Waiting::ShowFor(const QString& where, std::function<void()> giveUp)
{
    m_port = std::make_shared<Port>(Port{where, std::move(giveUp)});
    m_lull.stop();
    if (!m_since)
        m_since = m_clock.Ticks() - SignAfter;
    m_gate.Close();
    m_gate.LetWindowsClose(false);
    m_tick.start();
    ShowSign();
    Look();
    return {m_port.get(), [waiting = QPointer(this)](void*) {
                if (waiting)
                    waiting->EndPort();
            }};
}

void Waiting::EndPort()
{
    m_port.reset();
    m_gate.LetWindowsClose(!m_inWait);
    if (!m_inWait) {
        m_tick.stop();
        m_lull.start();
    }
}

void Waiting::EndSoon(std::function<void()> then)
{
    if (!m_inWait) {
        then();
        return;
    }
    m_then = std::move(then);
    m_last = m_clock.Ticks() + LastWait;
}

// Brings the sign up to date.
void Waiting::Look()
{
    const bool isLast = m_last && m_clock.Ticks() >= *m_last;
    const bool isLong = m_unasked && m_wait.mayGiveUp && Spent() >= LongestUnasked;
    if (m_inWait && (isLast || isLong)) {
        Finish(End::GivenUp);
        return;
    }
    if (!m_sign && Spent() >= SignAfter) {
        ShowSign();
        if (m_loop)
            m_loop->quit(); // to go on with the operator's input
    }
    if (!m_sign)
        return;
    const int id =
        !m_port && m_wait.what == Wait::For::Lock ? CoreText::WaitForLock : CoreText::WaitForAnswer;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Spent()).count();
    m_sign->ShowText(
        FormatMessage(m_strings, id, {m_port ? m_port->where : m_wait.where, QString::number(seconds)}));
    m_sign->ShowGivingUp(m_port || m_wait.mayGiveUp, MayGiveUp());
    if (!m_sign->isVisible())
        m_sign->ShowOver();
}

void Waiting::ShowSign()
{
    m_sign = new WaitSign(m_strings, Owner());
    m_shown = m_clock.Ticks();
    m_gate.Let(*m_sign);
    m_gate.StopKeepingText();
    connect(m_sign, &WaitSign::GivenUp, this, &Waiting::GiveUp);
}

bool Waiting::MayGiveUp() const
{
    return m_sign && m_clock.Ticks() - *m_shown >= LookingTime && (m_port || (m_inWait && m_wait.mayGiveUp));
}

void Waiting::GiveUp()
{
    if (m_port)
        std::exchange(m_port->giveUp, [] {})();
    else
        Finish(End::GivenUp);
}

void Waiting::Finish(End end)
{
    if (!m_inWait || m_end)
        return;
    m_end = end;
    if (m_loop)
        m_loop->quit();
}

// Back in an event loop: what was asked for is done, or has opened a window of its own.
void Waiting::EndOperation()
{
    if (m_inWait || m_port)
        return;
    m_since.reset();
    m_shown.reset();
    m_last.reset();
    delete m_sign;
    m_gate.Open();
    if (m_then)
        std::exchange(m_then, {})();
}
