#include "core/eventlog/LogChain.h"

#include "dao/base/TextMatch.h"

#include <QtEndian>
#include <sodium.h>

namespace {

constexpr int HashSize = crypto_generichash_BYTES;
constexpr int CheckOctets = 6;
constexpr auto Encoding = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

QByteArray Hash(const QByteArray& octets, const QByteArray& key)
{
    QByteArray hash(HashSize, Qt::Uninitialized);
    const auto data = [](const QByteArray& of) {
        return reinterpret_cast<const unsigned char*>(of.constData());
    };
    const auto size = [](const QByteArray& of) { return static_cast<size_t>(of.size()); };
    crypto_generichash(reinterpret_cast<unsigned char*>(hash.data()), size(hash), data(octets), size(octets),
                       data(key), size(key));
    return hash;
}

void Add(QByteArray& octets, qlonglong number)
{
    char bytes[sizeof number];
    qToBigEndian(number, bytes);
    octets.append(bytes, sizeof bytes);
}

// Its length first, so that no two records have the same octets. What stands for NUL on a server stands for
// it here, so that a copy to one keeps its chain.
void Add(QByteArray& octets, const QString& text)
{
    const QByteArray utf8 = dao::WithSignsForNull(text).toUtf8();
    Add(octets, utf8.size());
    octets.append(utf8);
}

} // namespace

LogChain::LogChain(const QByteArray& key, const QString& databaseId)
    : m_key(Hash("log of " + databaseId.toUtf8(), key)),
      m_check(QString::fromLatin1(Hash("check", m_key).left(CheckOctets).toBase64(Encoding)))
{
}

QString LogChain::Next(const QString& previous, const dao::EventRecord& record) const
{
    QByteArray octets;
    octets.reserve(512);
    Add(octets, previous);
    Add(octets, record.console);
    Add(octets, record.consoleNumber);
    Add(octets, record.recordId);
    Add(octets, record.time.toMSecsSinceEpoch());
    Add(octets, record.kind);
    Add(octets, record.direction);
    for (const QString* text :
         {&record.desc, &record.from, &record.to, &record.fromNumber, &record.toNumber, &record.operatorName})
        Add(octets, *text);
    return m_check + QString::fromLatin1(Hash(octets, m_key).toBase64(Encoding));
}
