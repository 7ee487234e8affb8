#pragma once

#include <QByteArray>
#include <QFile>
#include <optional>

// A text file or pipe of any length, one line after the other, so that only the line at hand is in memory.
class LineFile {
public:
    // "-" is standard input. Raises Error that names it when it cannot be opened.
    explicit LineFile(const QString& path);

    // Without its end; nothing at the end of the file. Raises Error when reading fails.
    std::optional<QByteArray> Next();
    // Whether the line at hand is longer than any that a program writes; it is given in part then.
    bool IsTooLong() const { return m_tooLong; }

    // Of the line at hand, from 1.
    qint64 Number() const { return m_number; }
    // Whether the line at hand was the last one and lacks its end, as a program that was killed leaves it.
    bool IsCutOff() const { return m_cutOff; }

    // A sentence about the line at hand, with its place.
    QString About(std::size_t column, const QString& reason) const;

private:
    QByteArray Read();

    QString m_name;
    QFile m_file;
    qint64 m_number = 0;
    bool m_cutOff = false;
    bool m_tooLong = false;
};
