#pragma once

#include <QString>
#include <QTime>

// A time of day in the user's long format: hours, minutes and seconds, without a time zone.
QString LongTime(const QTime& time);
