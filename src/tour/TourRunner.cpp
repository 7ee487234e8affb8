#include "tour/TourRunner.h"

#include "core/texts/Errors.h"
#include "tour/TourPicture.h"

#include <QDir>

namespace {

constexpr int Glance = 25; // ms between looks
constexpr int Settle = 60; // ms that a step's last change is given to be painted

// What is seen instead of what a line looks for.
QString SeenInstead(const TourLine& line)
{
    try {
        return line.look();
    } catch (const Error& failure) {
        return failure.Description();
    }
}

} // namespace

TourRunner::TourRunner(const QString& folder, std::vector<TourStep> steps)
    : m_folder(folder),
      m_steps(std::move(steps)),
      m_log(folder + QStringLiteral("/tour.log"))
{
    QDir pictures(m_folder);
    for (const QString& old : pictures.entryList({QStringLiteral("[0-9]*-*.png")}, QDir::Files))
        pictures.remove(old);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &TourRunner::TakeLine);
}

void TourRunner::Start()
{
    if (!m_log.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        m_failed = true;
        Q_EMIT Finished();
        return;
    }
    Begin();
}

void TourRunner::Begin()
{
    if (m_current == m_steps.size()) {
        Q_EMIT Finished();
        return;
    }
    m_line = 0;
    m_waited.start();
    m_timer.start(0);
}

void TourRunner::TakeLine()
{
    if (Step().lines[m_line].act)
        Act();
    else
        Look();
}

void TourRunner::Act()
{
    const TourLine& line = Step().lines[m_line++];
    m_waited.start();
    // Before it is done: a deed that opens a dialog lasts until the dialog is closed.
    m_timer.start(Step().lines[m_line].act ? 0 : Glance);
    QString trouble;
    try {
        line.act();
        return;
    } catch (const Error& failure) {
        trouble = failure.Description();
    } catch (const std::exception& failure) {
        trouble = QString::fromUtf8(failure.what());
    }
    m_timer.stop();
    if (m_current < m_steps.size())
        End(QStringLiteral("%1 (%2)").arg(trouble, line.place));
}

// All that is to be seen after a deed must be seen at once.
void TourRunner::Look()
{
    std::size_t next = m_line;
    for (; next < Step().lines.size() && Step().lines[next].look; ++next) {
        const TourLine& line = Step().lines[next];
        const QString seen = SeenInstead(line);
        if (seen.isEmpty())
            continue;
        if (m_waited.elapsed() < line.patience)
            m_timer.start(Glance);
        else
            End(QStringLiteral("%1 (%2)").arg(seen, line.place));
        return;
    }
    m_line = next;
    if (m_line < Step().lines.size())
        m_timer.start(0);
    else
        QTimer::singleShot(Settle, this, [this] { End({}); });
}

void TourRunner::End(const QString& seen)
{
    SavePicture();
    QString line = QStringLiteral("%1 %2: ").arg(Number(), Step().name);
    line += seen.isEmpty() ? QStringLiteral("ok")
                           : QStringLiteral("FAILED, expected %1, saw %2").arg(Step().expected, seen);
    m_log.write(line.toUtf8() + '\n');
    m_log.flush();
    m_failed = !seen.isEmpty();
    if (m_failed) {
        Q_EMIT Finished();
        return;
    }
    ++m_current;
    Begin();
}

QString TourRunner::Number() const
{
    return QStringLiteral("%1").arg(m_current + 1, 2, 10, QLatin1Char('0'));
}

void TourRunner::SavePicture() const
{
    TakeTourPicture().save(QStringLiteral("%1/%2-%3.png").arg(m_folder, Number(), Step().name));
}
