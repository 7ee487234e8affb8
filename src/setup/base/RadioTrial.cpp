#include "setup/base/RadioTrial.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "radio/line/Map27Control.h"
#include "setup/base/TextIds.h"

namespace {

constexpr int Limit = 15000; // ms; a radio that is there answers within two seconds

} // namespace

RadioTrial::RadioTrial(ControlMaker makeControl, const IStringSource& strings)
    : m_makeControl(std::move(makeControl)),
      m_strings(strings)
{
    m_limit.setSingleShot(true);
    m_limit.setInterval(Limit);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        const QString reason = m_control ? m_control->Link().text : QString();
        Fail(FormatMessage(m_strings, SetUpText::RadioSilent, {m_port, QString::number(Limit / 1000), reason})
                 .trimmed());
    });
}

RadioTrial::~RadioTrial() = default;

void RadioTrial::Begin(const QString& port, int baud)
{
    Stop();
    m_port = port;
    m_control = m_makeControl();
    connect(m_control.get(), &Map27Control::NumberingReceived, this, &RadioTrial::TakeNumbering);
    m_limit.start();
    Map27Control* const begun = m_control.get();
    try {
        begun->SetCommPort(port);
        begun->SetBaudRate(baud);
        begun->OpenLink();
    } catch (const std::exception& failure) {
        if (m_control.get() == begun) // it may have been stopped while the port was waited for
            Fail(DescribeError(failure, m_strings));
    }
}

// It may be an event of the control, or its opening, that ends it.
void RadioTrial::Stop()
{
    m_limit.stop();
    if (!m_control)
        return;
    m_control->disconnect(this);
    m_control->CloseLink();
    m_control.release()->deleteLater();
}

void RadioTrial::TakeNumbering()
{
    const RadioNumbering numbering{.prefix = m_control->RadioPrefix(),
                                   .ident = m_control->RadioIdent(),
                                   .unitBaseIdent = m_control->UnitBaseIdent(),
                                   .unitMaxIdent = m_control->UnitMaxIdent(),
                                   .groupBaseIdent = m_control->GroupBaseIdent(),
                                   .groupMaxIdent = m_control->GroupMaxIdent(),
                                   .unitDigits = m_control->UnitTwoDigit() ? 2 : 3,
                                   .groupDigits = m_control->GroupTwoDigit() ? 2 : 3};
    Stop();
    Q_EMIT Answered(numbering);
}

void RadioTrial::Fail(const QString& reason)
{
    Stop();
    Q_EMIT Failed(reason);
}
