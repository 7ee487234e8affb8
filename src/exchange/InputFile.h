#pragma once

#include <QByteArray>
#include <QString>

// The whole file. Raises Error that names it when it cannot be read, or with the words `tooLarge` when it has
// more than 16 MiB, as a device that never ends would have. May be called on any thread.
QByteArray ReadInputFile(const QString& path,
                         const QString& tooLarge = QStringLiteral("the file is larger than 16 MiB"));
