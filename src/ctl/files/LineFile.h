#pragma once

#include <QByteArray>
#include <QFile>
#include <optional>

// A text file or pipe of any length, one line after the other, so that only the line at hand is in memory.
class LineFile {
public:
    // "-" is standard input. Raises Error that names it when it cannot be opened.
    explicit LineFile(const QString& path);

    // Without its end; nothing at the end of the file. Raises Error for a line that is longer than any that a
    // program writes, and when reading fails.
    std::optional<QByteArray> Next();

    // Of the line at hand, from 1.
    qint64 Number() const { return m_number; }
    // Whether the line at hand was the last one and lacks its end, as a program that was killed leaves it.
    bool IsCutOff() const { return m_cutOff; }

    // Raises Error about the line at hand.
    [[noreturn]] void Raise(std::size_t column, const QString& reason) const;

private:
    QString m_name;
    QFile m_file;
    qint64 m_number = 0;
    bool m_cutOff = false;
};
