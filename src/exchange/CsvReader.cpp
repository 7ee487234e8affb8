#include "exchange/CsvReader.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "exchange/TextIds.h"

#include <QStringDecoder>

namespace {

class CsvParser {
public:
    CsvParser(const QString& path, const QString& text, const IStringSource& strings)
        : m_path(path),
          m_text(text),
          m_strings(strings)
    {
    }

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
            Raise(m_line, ExchangeText::AfterQuotedField);
        ++m_line;
        return record;
    }

    QString ParsePlain()
    {
        const qsizetype start = m_pos;
        while (m_pos < m_text.size() && Peek() != u',' && Peek() != u'\n') {
            if (Peek() == u'"')
                Raise(m_line, ExchangeText::QuoteInField);
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
        Raise(firstLine, ExchangeText::NoClosingQuote);
    }

    [[noreturn]] void Raise(int line, int reason) const
    {
        RaiseLineError(m_path, line, m_strings.LoadString(reason), m_strings);
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
    const IStringSource& m_strings;
    qsizetype m_pos = 0;
    int m_line = 1;
};

} // namespace

void RaiseLineError(const QString& path, int line, const QString& reason, const IStringSource& strings)
{
    throw Error(ErrorCode::General,
                FormatMessage(strings, ExchangeText::ProblemOfLine, {path, QString::number(line), reason}));
}

QList<CsvRecord> ReadCsv(const QString& path, const QByteArray& bytes, const IStringSource& strings)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(bytes);
    if (decode.hasError())
        throw Error(ErrorCode::General, FormatMessage(strings, ExchangeText::NotUtf8, {path}));
    return CsvParser(path, text, strings).Parse();
}
