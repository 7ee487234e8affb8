#include "radio/base/DutyCodes.h"

namespace {

bool MeansStatus(const QString& setting, int status)
{
    bool numeric = false;
    const double code = setting.trimmed().toDouble(&numeric);
    return numeric && code == status;
}

} // namespace

DutyCodes::DutyCodes(const std::function<QString(const QString& key, const QString& fallback)>& setting)
    : m_on(setting(QStringLiteral("radio_onduty"), QStringLiteral("1"))),
      m_off(setting(QStringLiteral("radio_offduty"), QStringLiteral("2")))
{
}

bool DutyCodes::IsOn(int status) const
{
    return MeansStatus(m_on, status);
}

bool DutyCodes::IsOff(int status) const
{
    return MeansStatus(m_off, status);
}
