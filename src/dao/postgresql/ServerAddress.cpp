#include "dao/postgresql/ServerAddress.h"
#include "dao/base/Error.h"
#include "dao/base/Location.h"
#include <QHash>
#include <libpq-fe.h>
#include <memory>

namespace dao::postgresql {

namespace {

QHash<QByteArray, QByteArray> OptionsOf(const QString& target)
{
    char* reason = nullptr;
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> parsed(
        PQconninfoParse(target.toUtf8().constData(), &reason), PQconninfoFree);
    if (!parsed) {
        const QString text = QString::fromUtf8(reason).trimmed();
        PQfreemem(reason);
        throw Error(Kind::BadServerAddress, {WithoutPassword(target), text}, text);
    }
    QHash<QByteArray, QByteArray> options;
    for (const PQconninfoOption* option = parsed.get(); option->keyword; ++option)
        if (option->val)
            options.insert(option->keyword, option->val);
    return options;
}

// The i-th of a list; a list of one is for all hosts.
QByteArray Element(const QList<QByteArray>& list, qsizetype i)
{
    return list.size() == 1 ? list.first() : list.value(i);
}

} // namespace

ServerAddress ServerAddress::Parse(const QString& target)
{
    QHash<QByteArray, QByteArray> options = OptionsOf(target);
    ServerAddress address;
    address.m_shown = WithoutPassword(target);
    address.m_database = QString::fromUtf8(options.take("dbname"));
    address.m_user = options.take("user");
    address.m_password = options.take("password");
    if (address.m_database.isEmpty())
        throw Error(Kind::BadServerAddress, {address.m_shown, "no database"}, "no database is named");

    const QList<QByteArray> hosts = options.take("host").split(',');
    const QList<QByteArray> ports = options.take("port").split(',');
    const QList<QByteArray> addresses = options.take("hostaddr").split(',');
    const qsizetype count = std::max(hosts.size(), addresses.size());
    if (ports.size() != 1 && ports.size() != count)
        throw Error(Kind::BadServerAddress, {address.m_shown, "host, port"},
                    "hosts and ports are not of the same number");
    for (qsizetype i = 0; i < count; ++i) {
        QList<Option> host;
        for (auto option = options.cbegin(); option != options.cend(); ++option)
            host.append({option.key(), option.value()});
        for (const auto& [keyword, list] :
             {std::pair("host", &hosts), std::pair("port", &ports), std::pair("hostaddr", &addresses)})
            if (const QByteArray value = Element(*list, i); !value.isEmpty())
                host.append({keyword, value});
        address.m_hosts.append(host);
    }
    return address;
}

} // namespace dao::postgresql
