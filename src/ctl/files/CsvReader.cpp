#include "ctl/files/CsvReader.h"

#include "core/texts/Errors.h"
#include "ctl/files/InputFile.h"

#include <QStringDecoder>

namespace {

class CsvParser {
public:
    CsvParser(const QString& path, const QString& text) : m_path(path), m_text(text) {}

    QList<CsvRecord> Parse()
    {
        QList<CsvRecord> records;
        while (m_pos < m_text.size()) {
            CsvRecord record = ParseRecord();
            const bool blank = record.fields.size() == 1 && record.fields[0].trimmed().isEmpty();
            if (!blank)
                records.append(record);
        }
        return records;
    }

private:
    CsvRecord ParseRecord()
    {
        CsvRecord record{m_line, {}};
        do
            record.fields.append(Peek() == u'"' ? ParseQuoted() : ParsePlain());
        while (Take(u','));
        Take(u'\r');
        if (m_pos < m_text.size() && !Take(u'\n'))
            RaiseLineError(m_path, m_line,
                           QStringLiteral("a quoted field must be followed by a comma or the line's end"));
        ++m_line;
        return record;
    }

    QString ParsePlain()
    {
        const qsizetype start = m_pos;
        while (m_pos < m_text.size() && Peek() != u',' && Peek() != u'\n') {
            if (Peek() == u'"')
                RaiseLineError(m_path, m_line,
                               QStringLiteral("a quote inside a field that does not begin with one"));
            ++m_pos;
        }
        qsizetype end = m_pos;
        if (end > start && Peek() != u',' && m_text[end - 1] == u'\r')
            --end;
        return m_text.mid(start, end - start);
    }

    QString ParseQuoted()
    {
        const int firstLine = m_line;
        QString field;
        ++m_pos;
        while (m_pos < m_text.size()) {
            const QChar c = m_text[m_pos++];
            if (c == u'"' && !Take(u'"'))
                return field;
            if (c == u'\n')
                ++m_line;
            field += c;
        }
        RaiseLineError(m_path, firstLine, QStringLiteral("a quoted field has no closing quote"));
    }

    // The next character; NUL at the end.
    QChar Peek() const { return m_pos < m_text.size() ? m_text[m_pos] : QChar(); }

    bool Take(QChar c)
    {
        if (m_pos >= m_text.size() || m_text[m_pos] != c)
            return false;
        ++m_pos;
        return true;
    }

    const QString& m_path;
    const QString& m_text;
    qsizetype m_pos = 0;
    int m_line = 1;
};

} // namespace

void RaiseLineError(const QString& path, int line, const QString& reason)
{
    throw Error(ErrorCode::General, QStringLiteral("%1, line %2: %3").arg(path).arg(line).arg(reason));
}

QList<CsvRecord> ReadCsvFile(const QString& path)
{
    const QByteArray bytes = ReadInputFile(path);
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(bytes);
    if (decode.hasError())
        throw Error(ErrorCode::General, QStringLiteral("%1: the file is not UTF-8").arg(path));
    return CsvParser(path, text).Parse();
}
