#include "dao/base/LogReceipt.h"

#include <QRegularExpression>
#include <QStringList>

namespace dao {

namespace {

constexpr int KeyCheckSize = 8; // what a chain begins with
constexpr int ProofOctets = 12;
constexpr int DigitsTogether = 4; // as they are shown
const QString Title = QStringLiteral("VeltorKyn log receipt");
const QString Database = QStringLiteral("database");
const QString Time = QStringLiteral("time");

QString Shown(const QString& proof)
{
    QStringList groups;
    for (qsizetype at = 0; at < proof.size(); at += DigitsTogether)
        groups.append(proof.mid(at, DigitsTogether));
    return groups.join(u' ');
}

std::optional<LogHead> HeadOf(const QStringList& words, const QDateTime& time)
{
    static const QRegularExpression form(QStringLiteral("^[0-9a-f]{%1}$").arg(2 * ProofOctets));
    bool isNumber = false;
    const LogHead head{words[0], words.value(1).toLongLong(&isNumber),
                       QStringList(words.mid(2)).join(QString()).toLower(), time};
    if (!isNumber || head.number < 1 || !form.match(head.proof).hasMatch())
        return {};
    return head;
}

} // namespace

QString ProofOf(const QString& chain)
{
    const QByteArray hash =
        QByteArray::fromBase64(chain.mid(KeyCheckSize).toLatin1(), QByteArray::Base64UrlEncoding);
    return hash.size() < ProofOctets ? QString() : QString::fromLatin1(hash.left(ProofOctets).toHex());
}

QString LogReceipt::Text() const
{
    QString text = Title + u'\n' + Database + u' ' + database + u'\n' + Time + u' ' +
                   time.toUTC().toString(Qt::ISODate) + u'\n';
    for (const LogHead& head : heads)
        text +=
            QStringLiteral("%1 %2 %3\n").arg(head.console, QString::number(head.number), Shown(head.proof));
    return text;
}

std::optional<LogReceipt> LogReceipt::Parse(const QString& text)
{
    LogReceipt receipt;
    QStringList lines;
    for (const QString& line : text.split(u'\n'))
        if (const QString clean = line.simplified(); !clean.isEmpty())
            lines.append(clean);
    if (lines.value(0).compare(Title, Qt::CaseInsensitive) != 0)
        return {};
    for (const QString& line : lines.mid(1)) {
        const QStringList words = line.split(u' ');
        if (words[0].compare(Database, Qt::CaseInsensitive) == 0 && words.size() == 2)
            receipt.database = words[1].toLower();
        else if (words[0].compare(Time, Qt::CaseInsensitive) == 0 && words.size() == 2)
            receipt.time = QDateTime::fromString(words[1], Qt::ISODate);
        else if (const auto head = HeadOf(words, receipt.time))
            receipt.heads.append(*head);
        else
            return {};
    }
    if (receipt.database.isEmpty() || !receipt.time.isValid())
        return {};
    return receipt;
}

} // namespace dao
