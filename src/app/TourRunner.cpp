#include "app/TourRunner.h"

#include "app/TourPicture.h"
#include "core/Errors.h"

#include <QDir>

namespace {

constexpr int Glance = 25; // ms between looks
constexpr int Settle = 60; // ms that a step's last change is given to be painted

} // namespace

TourRunner::TourRunner(const QString& folder, std::vector<TourStep> steps)
    : m_folder(folder),
      m_steps(std::move(steps)),
      m_log(folder + QStringLiteral("/tour.log"))
{
    QDir pictures(m_folder);
    for (const QString& old : pictures.entryList({QStringLiteral("[0-9]*-*.png")}, QDir::Files))
        pictures.remove(old);
    m_timer.setInterval(Glance);
    connect(&m_timer, &QTimer::timeout, this, &TourRunner::Look);
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
    m_trouble.clear();
    m_waited.start();
    // Queued, so that a step that opens a modal dialog does not keep the timer from firing.
    QMetaObject::invokeMethod(this, &TourRunner::Act, Qt::QueuedConnection);
}

void TourRunner::Act()
{
    m_timer.start();
    try {
        m_steps[m_current].act();
    } catch (const Error& failure) {
        m_trouble = failure.Description();
    } catch (const std::exception& failure) {
        m_trouble = QString::fromUtf8(failure.what());
    }
}

void TourRunner::Look()
{
    const QString seen = m_trouble.isEmpty() ? m_steps[m_current].look() : m_trouble;
    if (!seen.isEmpty() && m_trouble.isEmpty() && m_waited.elapsed() < m_steps[m_current].patience)
        return;
    m_timer.stop();
    QTimer::singleShot(Settle, this, [this, seen] { End(seen); });
}

void TourRunner::End(const QString& seen)
{
    SavePicture();
    const TourStep& step = m_steps[m_current];
    QString line = QStringLiteral("%1 %2: ").arg(Number(), step.name);
    line += seen.isEmpty() ? QStringLiteral("ok")
                           : QStringLiteral("FAILED, expected %1, saw %2").arg(step.expected, seen);
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
    const QString file = QStringLiteral("%1/%2-%3.png").arg(m_folder, Number(), m_steps[m_current].name);
    TakeTourPicture().save(file);
}
