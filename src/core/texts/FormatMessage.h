#pragma once

#include <QString>
#include <QStringList>

struct IStringSource;

// Fills "#01", "#02" … with the values and expands "\n" (CR LF), "\t" and "\\". Never fails: an unknown
// escape is dropped, an unusable placeholder is copied as it stands. Inserted values are not scanned again.
QString FormatMessage(const QString& text, const QStringList& values);

// The same for a catalogue text.
QString FormatMessage(const IStringSource& strings, int id, const QStringList& values);
