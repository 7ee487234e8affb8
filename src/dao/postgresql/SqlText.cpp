#include "dao/postgresql/SqlText.h"

namespace dao::postgresql {

namespace {

constexpr QLatin1String NowCall("kyn_now()");

// The position after the quoted text or name that begins at `from`. A doubled quote inside ends one and
// begins another, which comes to the same.
qsizetype EndOfQuoted(const QString& sql, qsizetype from)
{
    const qsizetype end = sql.indexOf(sql[from], from + 1);
    return end < 0 ? sql.size() : end + 1;
}

qsizetype EndOfName(const QString& sql, qsizetype from)
{
    while (from < sql.size() && (sql[from].isLetterOrNumber() || sql[from] == '_'))
        ++from;
    return from;
}

} // namespace

SqlText SqlText::Parse(const QString& sql)
{
    SqlText text;
    QString server;
    const auto add = [&](int number) { server += '$' + QString::number(number); };
    for (qsizetype i = 0; i < sql.size();) {
        const QChar c = sql[i];
        if (c == '\'' || c == '"') {
            const qsizetype end = EndOfQuoted(sql, i);
            server += sql.mid(i, end - i);
            i = end;
        } else if (c == '?') {
            text.parameters.append(QString());
            text.numbers.append(++text.count);
            add(text.count);
            ++i;
        } else if (c == ':' && i + 1 < sql.size() && sql[i + 1] == ':') { // a cast
            server += "::";
            i += 2;
        } else if (c == ':' && EndOfName(sql, i + 1) > i + 1) {
            const qsizetype end = EndOfName(sql, i + 1);
            const QString name = sql.mid(i + 1, end - i - 1);
            qsizetype known = text.parameters.indexOf(name);
            if (known < 0) {
                known = text.parameters.size();
                text.parameters.append(name);
                text.numbers.append(++text.count);
            }
            add(text.numbers[known]);
            i = end;
        } else if (QStringView(sql).mid(i).startsWith(NowCall)) {
            if (text.now == 0)
                text.now = ++text.count;
            add(text.now);
            server += "::bigint";
            i += NowCall.size();
        } else {
            server += c;
            ++i;
        }
    }
    text.server = server.toUtf8();
    return text;
}

} // namespace dao::postgresql
