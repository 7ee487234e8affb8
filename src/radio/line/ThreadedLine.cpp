#include "radio/line/ThreadedLine.h"

#include <QEventLoop>
#include <QTimer>
#include <utility>

namespace {

using std::chrono::milliseconds;

// A port that opens within this needs no event loop; nobody notices the wait.
constexpr milliseconds Unnoticed{40};
constexpr milliseconds SignAfter{300};
// The line does all that it has to do within moments. Only a device that the system gets stuck in takes
// longer.
constexpr milliseconds Patience{500};

} // namespace

ThreadedLine::ThreadedLine(const Clock& clock, RadioLine::PortFactory ports, Place place)
    : m_place(place),
      m_reports([this] { Q_EMIT Woken(); }),
      m_calls([this] { Q_EMIT Called(); }),
      m_line(std::make_unique<RadioLine>(clock, std::move(ports), m_reports))
{
    connect(this, &ThreadedLine::Woken, this, &ThreadedLine::Deliver, Qt::QueuedConnection);
    connect(this, &ThreadedLine::Called, &m_bell, [this] { m_calls.RunAll(); });
    if (m_place == Place::UsersThread)
        return;
    m_thread.setObjectName(QStringLiteral("radio line"));
    m_line->moveToThread(&m_thread);
    m_bell.moveToThread(&m_thread);
    m_thread.start();
}

ThreadedLine::~ThreadedLine()
{
    m_reports.Begin();
    Do([this] {
        m_line->Close();
        m_line.reset();
    });
    m_thread.quit();
    m_thread.wait();
}

ThreadedLine::Outcome ThreadedLine::Open(const QString& portName, int bitsPerSecond)
{
    Close();
    const quint64 opening = m_reports.Begin();
    ++m_openings;
    m_calls.Leave(
        [this, opening, portName, bitsPerSecond] { m_line->Open(opening, portName, bitsPerSecond); });
    AwaitPort(opening, portName);
    --m_openings;

    const std::optional<LineReport> first = m_reports.IsCurrent(opening) ? m_reports.First() : std::nullopt;
    if (!first) {
        if (m_reports.IsCurrent(opening))
            Close();
        return {Opening::GivenUp};
    }
    const auto& condition = std::get<LineCondition>(*first);
    if (condition.kind == LineCondition::Kind::PortFailed) {
        Close();
        return {Opening::Failed, condition.problem};
    }
    m_open = true;
    Q_EMIT Woken(); // for what came meanwhile
    return {Opening::Opened};
}

void ThreadedLine::AwaitPort(quint64 opening, const QString& portName)
{
    if (m_place == Place::OwnThread)
        m_reports.AwaitFirst(Unnoticed);
    const auto isOver = [&] { return !m_reports.IsCurrent(opening) || m_reports.Waiting() > 0; };
    QEventLoop loop;
    const auto look = [&] {
        if (isOver())
            loop.quit();
    };
    connect(this, &ThreadedLine::Woken, &loop, look, Qt::QueuedConnection);
    if (isOver())
        return;
    bool signIsDue = false;
    if (m_waitSign) {
        QTimer::singleShot(
            SignAfter, &loop,
            [&] {
                signIsDue = true;
                loop.quit();
            });
    }
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    if (!signIsDue || isOver())
        return;
    const std::shared_ptr<void> sign = m_waitSign(portName, [this] { Close(); });
    if (!isOver())
        loop.exec();
}

void ThreadedLine::Close()
{
    m_open = false;
    m_reports.Begin();
    m_calls.Leave([this] { m_line->Close(); });
    Q_EMIT Woken(); // for an opening that is in progress
}

std::optional<map27::Refusal> ThreadedLine::Run(const RadioLine::Operation& operation, Late late)
{
    const auto refusal = std::make_shared<std::optional<map27::Refusal>>();
    if (!m_calls.Await([this, operation, refusal] { *refusal = m_line->Run(operation); }, Patience, late))
        return map27::Refusal{.code = map27::RefusalCode::LinkBusy};
    return *refusal;
}

void ThreadedLine::Leave(const RadioLine::Operation& operation)
{
    m_calls.Leave([this, operation] { m_line->Run(operation); });
}

void ThreadedLine::OnTime(const std::function<void()>& first)
{
    Do([&] {
        first();
        m_line->OnTime();
    });
}

// One at a time, each from an event of its own: its receiver may wait in a box, where the next ones still
// arrive, and between two the windows paint.
void ThreadedLine::Deliver()
{
    if (m_openings > 0)
        return;
    const std::optional<LineReport> report = m_reports.Take();
    if (!report)
        return;
    const std::size_t left = m_reports.Waiting();
    if (left > 0)
        Q_EMIT Woken();
    if (left == RadioLine::FewReports)
        m_calls.Leave([this] { m_line->WeighReports(); });
    Q_EMIT Reported(*report);
}

void ThreadedLine::Do(const LineCalls::Act& act)
{
    while (!m_calls.Await(act, std::chrono::hours(1), LineCalls::Late::Dropped)) {
    }
}
