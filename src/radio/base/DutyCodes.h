#pragma once

#include <QString>
#include <functional>

// Which statuses mean that their sender is on duty from now on, or off duty, as the site has set it.
class DutyCodes {
public:
    // `setting` gives a site setting, or what it is handed where there is none.
    explicit DutyCodes(const std::function<QString(const QString& key, const QString& fallback)>& setting);

    bool IsOn(int status) const;
    bool IsOff(int status) const;

private:
    QString m_on;
    QString m_off;
};
