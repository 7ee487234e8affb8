#pragma once

#include <QList>
#include <QString>
#include <optional>

struct IStringSource;

// Texts by section and key in a file that people also edit by hand: UTF-8, "[section]" lines, "key=value"
// lines, comments that begin with ";" or "#". Blanks around section, key and value are ignored; everything
// else in a value is text, whatever characters it holds. Section and key ignore case; of several equal keys
// the last one counts.
//
// A value that such a line cannot hold (blanks at its ends, line breaks) is written as "@percent(...)", UTF-8
// bytes percent-encoded, and read back from that.
//
// Writing keeps every other line, comments included, and replaces the file as a whole. The file is reread
// when somebody else has changed it. Errors are catalogue sentences that name the file.
class IniFile {
public:
    IniFile(QString file, const IStringSource& strings);

    const QString& FileName() const { return m_file; }

    // Nothing when the file or the key is missing. Raises Error for a file that exists but cannot be read or
    // understood.
    std::optional<QString> Read(const QString& section, const QString& key);

    struct Item {
        QString key;
        QString value;
    };
    // Writes all items or, raising Error, none. Creates the file and its folder.
    void Write(const QString& section, const QList<Item>& items);

private:
    struct Line {
        QString text; // as in the file
        QString section;
        QString key; // empty for headings, comments and blank lines
    };
    // Tells whether the file is still the one that was read.
    struct Stamp {
        quint64 device = 0, node = 0;
        qint64 size = 0, seconds = 0, nanoseconds = 0;
        bool operator==(const Stamp&) const = default;
    };

    std::optional<Stamp> FileStamp() const;
    void Load();
    void Parse(const QByteArray& bytes);
    qsizetype Find(const QString& section, const QString& key) const;
    static void Set(QList<Line>& lines, const QString& section, const Item& item, qsizetype found);
    void Save(const QList<Line>& lines);
    [[noreturn]] void RaiseNotReadable(const QString& reason) const;

    QString m_file;
    const IStringSource& m_strings;
    QList<Line> m_lines;
    std::optional<Stamp> m_stamp; // of the file that m_lines came from
};
