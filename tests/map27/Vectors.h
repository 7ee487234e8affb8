#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <string>

// "fcs", "frames" or "messages" of the golden file.
inline QJsonArray Vectors(const char* part)
{
    static const QJsonObject vectors = [] {
        QFile file(TEST_DATA_DIR "/map27-vectors.json");
        file.open(QIODevice::ReadOnly);
        return QJsonDocument::fromJson(file.readAll()).object();
    }();
    return vectors[QLatin1String(part)].toArray();
}

inline std::string Text(const QJsonValue& vector, const char* member)
{
    return vector[QLatin1String(member)].toString().toStdString();
}
