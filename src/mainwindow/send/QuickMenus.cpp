#include "mainwindow/send/QuickMenus.h"

#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "dao/Workspace.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/keys/KeyBindings.h"
#include "mainwindow/send/SendPane.h"
#include "radio/base/LastParties.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/Map27Executive.h"

#include <QAction>
#include <QMenu>

namespace {

static_assert(FavouriteKeys == QuickStore::Favourites && QuickTextKeys == QuickStore::Texts);

QString Literally(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

QuickMenus::QuickMenus(const Parts& parts, QAction& favourites, QAction& texts, QAction& parties)
    : QObject(&parts.send),
      m_parts(parts)
{
    BuildFavourites(favourites);
    BuildTexts(texts);
    QMenu* last = AddMenu(parties);
    connect(last, &QMenu::aboutToShow, this, [this, last] { FillParties(*last); });
}

QuickMenus::~QuickMenus() = default;

QMenu* QuickMenus::AddMenu(QAction& item)
{
    auto* menu = new QMenu(&m_parts.send);
    item.setMenu(menu);
    return menu;
}

void QuickMenus::BuildFavourites(QAction& item)
{
    QMenu* menu = AddMenu(item);
    QMenu* keep = new QMenu(m_parts.strings.LoadString(MainText::KeepFavourite), menu);
    for (int place = 0; place < QuickStore::Favourites; ++place) {
        const auto index = static_cast<std::size_t>(place);
        m_favourites[index] = menu->addAction(QString());
        m_favourites[index]->setObjectName(QStringLiteral("miFavourite%1").arg(place + 1));
        m_parts.keys.Follow(*m_favourites[index], KeyCommand::Favourite, place);
        connect(m_favourites[index], &QAction::triggered, this, [this, place] { PrepareFavourite(place); });
        m_keepFavourites[index] = keep->addAction(QString());
        m_keepFavourites[index]->setObjectName(QStringLiteral("miKeepFavourite%1").arg(place + 1));
        connect(m_keepFavourites[index], &QAction::triggered, this, [this, place] { KeepFavourite(place); });
    }
    menu->addSeparator();
    menu->addMenu(keep);
    connect(menu, &QMenu::aboutToShow, this, &QuickMenus::FillFavourites);
}

void QuickMenus::BuildTexts(QAction& item)
{
    QMenu* menu = AddMenu(item);
    QMenu* keep = new QMenu(m_parts.strings.LoadString(MainText::KeepText), menu);
    for (int place = 0; place < QuickStore::Texts; ++place) {
        const auto index = static_cast<std::size_t>(place);
        m_texts[index] = menu->addAction(QString());
        m_texts[index]->setObjectName(QStringLiteral("miQuickText%1").arg(place + 1));
        m_parts.keys.Follow(*m_texts[index], KeyCommand::QuickText, place);
        connect(m_texts[index], &QAction::triggered, this, [this, place] { PrepareText(place); });
        m_keepTexts[index] = keep->addAction(QString());
        m_keepTexts[index]->setObjectName(QStringLiteral("miKeepText%1").arg(place + 1));
        connect(m_keepTexts[index], &QAction::triggered, this, [this, place] { KeepText(place); });
    }
    menu->addSeparator();
    menu->addMenu(keep);
    connect(menu, &QMenu::aboutToShow, this, &QuickMenus::FillTexts);
}

QuickStore QuickMenus::Store() const
{
    return {m_parts.settings, m_parts.database.Workspace().UserName()};
}

void QuickMenus::Attempt(const std::function<void()>& step)
{
    if (!m_parts.session.LoggedOn)
        return;
    try {
        step();
    } catch (const std::exception& failure) {
        m_parts.prompt.ShowWarning(DescribeError(failure, m_parts.strings));
    }
}

QString QuickMenus::Describe(const Favourite& favourite) const
{
    return favourite.status
               ? FormatMessage(m_parts.strings, MainText::FavouriteStatus,
                               {favourite.to, m_parts.statusTexts.StatusOutText(*favourite.status)})
               : FormatMessage(m_parts.strings, MainText::FavouriteCall, {favourite.to});
}

void QuickMenus::FillFavourites()
{
    Attempt([this] {
        const QuickStore store = Store();
        const QString unused = m_parts.strings.LoadString(MainText::FreePlace);
        for (int place = 0; place < QuickStore::Favourites; ++place) {
            const auto favourite = store.FavouriteAt(place);
            const QString text = favourite ? Literally(Describe(*favourite)) : unused;
            m_favourites[static_cast<std::size_t>(place)]->setText(text);
            m_keepFavourites[static_cast<std::size_t>(place)]->setText(
                m_parts.keys.TextOf(KeyCommand::Favourite, place) + QLatin1String("   ") + text);
        }
    });
}

void QuickMenus::FillTexts()
{
    Attempt([this] {
        const QuickStore store = Store();
        const QString unused = m_parts.strings.LoadString(MainText::FreePlace);
        for (int place = 0; place < QuickStore::Texts; ++place) {
            const QString kept = store.TextAt(place);
            const QString text = kept.isEmpty() ? unused : Literally(kept);
            m_texts[static_cast<std::size_t>(place)]->setText(text);
            m_keepTexts[static_cast<std::size_t>(place)]->setText(
                m_parts.keys.TextOf(KeyCommand::QuickText, place) + QLatin1String("   ") + text);
        }
    });
}

void QuickMenus::FillParties(QMenu& menu)
{
    constexpr qsizetype Most = 10;

    menu.clear();
    const QStringList parties = m_parts.executive.Parties().List().mid(0, Most);
    for (const QString& party : parties)
        connect(menu.addAction(Literally(party)), &QAction::triggered, this,
                [this, party] { m_parts.send.SetAddress(party); });
    if (parties.isEmpty())
        menu.addAction(m_parts.strings.LoadString(MainText::FreePlace))->setEnabled(false);
}

void QuickMenus::PrepareFavourite(int place)
{
    Attempt([&] {
        if (const auto favourite = Store().FavouriteAt(place))
            m_parts.send.Prepare(*favourite);
        else
            m_parts.prompt.ShowInfo(m_parts.strings.LoadString(MainText::NoFavourite));
    });
}

void QuickMenus::PrepareText(int place)
{
    Attempt([&] {
        const QString text = Store().TextAt(place);
        if (text.isEmpty())
            m_parts.prompt.ShowInfo(m_parts.strings.LoadString(MainText::NoQuickText));
        else
            m_parts.send.PrepareText(text);
    });
}

// What stands in the send pane; an empty pane frees the place.
void QuickMenus::KeepFavourite(int place)
{
    Attempt([&] {
        const auto favourite = m_parts.send.Composed();
        if (!favourite && !m_parts.send.IsEmpty()) // must not free the place
            return m_parts.prompt.ShowWarning(m_parts.strings.LoadString(MainText::NoSuchFavourite));
        if (m_parts.send.IsEmergencyCall() || m_parts.send.IsPriorityCall())
            return m_parts.prompt.ShowWarning(m_parts.strings.LoadString(MainText::NoEmergencyFavourite));
        Store().KeepFavourite(place, favourite);
    });
}

void QuickMenus::KeepText(int place)
{
    Attempt([&] { Store().KeepText(place, m_parts.send.ComposedText()); });
}
