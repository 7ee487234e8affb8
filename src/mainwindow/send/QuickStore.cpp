#include "mainwindow/send/QuickStore.h"

#include "core/settings/Settings.h"
#include "mainwindow/send/SendRules.h"

#include <QUrl>

namespace {

// "call Unit20", "status 05 Unit20"
const QString Call = QStringLiteral("call ");
const QString Status = QStringLiteral("status ");

QString FavouriteKey(int place)
{
    return QStringLiteral("favourite%1").arg(place + 1);
}

QString TextKey(int place)
{
    return QStringLiteral("text%1").arg(place + 1);
}

} // namespace

// A user's name may hold what the name of a section may not.
QuickStore::QuickStore(Settings& settings, const QString& user)
    : m_settings(settings),
      m_section(QStringLiteral("quick ") + QString::fromLatin1(QUrl::toPercentEncoding(user.toCaseFolded())))
{
}

std::optional<Favourite> QuickStore::FavouriteAt(int place) const
{
    constexpr qsizetype CodeLength = 3; // with a blank

    const QString kept = m_settings.Read(m_section, FavouriteKey(place), {});
    Favourite favourite;
    if (kept.startsWith(Call)) {
        favourite.to = kept.mid(Call.size()).trimmed();
    } else if (kept.startsWith(Status)) {
        favourite.status = StatusCodeOf(kept.mid(Status.size()));
        favourite.to = kept.mid(Status.size() + CodeLength).trimmed();
        if (!favourite.status)
            return {};
    }
    return favourite.to.isEmpty() ? std::nullopt : std::optional(favourite);
}

QString QuickStore::TextAt(int place) const
{
    return MessageOf(m_settings.Read(m_section, TextKey(place), {})).value_or(QString());
}

void QuickStore::KeepFavourite(int place, const std::optional<Favourite>& favourite)
{
    QString kept;
    if (favourite && favourite->status)
        kept =
            Status + QStringLiteral("%1 ").arg(*favourite->status, 2, 10, QLatin1Char('0')) + favourite->to;
    else if (favourite)
        kept = Call + favourite->to;
    m_settings.Write(m_section, FavouriteKey(place), kept);
}

void QuickStore::KeepText(int place, const QString& text)
{
    m_settings.Write(m_section, TextKey(place), text);
}
