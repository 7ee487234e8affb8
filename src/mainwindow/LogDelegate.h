#pragma once

#include "core/PlainIconDelegate.h"

// Draws a line of the log on one line: line ends and other control characters of a message appear as signs.
class LogDelegate : public PlainIconDelegate {
    Q_OBJECT

public:
    using PlainIconDelegate::PlainIconDelegate;

    QString displayText(const QVariant& value, const QLocale& locale) const override;
};
