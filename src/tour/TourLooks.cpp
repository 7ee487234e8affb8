#include "tour/TourLooks.h"

#include "mainwindow/lists/Outcome.h"
#include "mainwindow/scada/ScadaModel.h"
#include "mainwindow/talkgroups/TalkgroupModel.h"
#include "tour/TourControls.h"

#include <QAbstractItemView>
#include <QScreen>

namespace {

QString Missing(const QString& place)
{
    if (!TourControls::IsItem(place)) {
        const QWidget* control = TourControls::Find(place);
        return control && control->isVisible() ? QString() : place + QStringLiteral(" not shown");
    }
    if (TourControls::Item(place).isValid())
        return {};
    const QAbstractItemModel* model = TourControls::View(place)->model();
    return QStringLiteral("no %1 among %2 rows").arg(place).arg(model->rowCount());
}

QString Holds(const QString& place, const QString& pattern)
{
    if (const QString missing = Missing(place); !missing.isEmpty())
        return missing;
    const QString seen = TourControls::TextOf(place);
    return TourControls::IsLike(seen.trimmed(), pattern.trimmed()) ? QString()
                                                                   : QStringLiteral("\"%1\"").arg(seen);
}

// A talkgroup's or a signal's picture, and what became of the last command for it.
QString StateOf(const QModelIndex& item)
{
    static const char* const outcomes[] = {"", " done", " not done"};
    const bool signal = qobject_cast<const ScadaModel*>(item.model());
    QString state = item.data(signal ? ScadaModel::PictureRole : TalkgroupModel::PictureRole).toString();
    if (signal && item.data(ScadaModel::GhostRole).toBool())
        state += QLatin1String(" unknown");
    return (state + QLatin1String(outcomes[item.data(OutcomeRole).toInt()])).trimmed();
}

QString Is(const QString& place, const QString& state)
{
    if (const QString missing = Missing(place); !missing.isEmpty())
        return missing;
    const QString seen = StateOf(TourControls::Item(place));
    return seen == state ? QString() : QStringLiteral("%1 as \"%2\"").arg(place, seen);
}

QString IsDisabled(const QString& name)
{
    if (const QString missing = Missing(name); !missing.isEmpty())
        return missing;
    return TourControls::Find(name)->isEnabled() ? name + QStringLiteral(" enabled") : QString();
}

QString FillsScreen(const QString& name)
{
    const QWidget* window = TourControls::Find(name);
    if (!window)
        return Missing(name);
    const QSize size = window->size();
    return size == window->screen()->size() ? QString()
                                            : QStringLiteral("%1 by %2").arg(size.width()).arg(size.height());
}

} // namespace

std::vector<TourWord> TourLookWords()
{
    using Values = const QStringList&;
    return {
        {QStringLiteral("see PLACE"), {}, [](Values v) { return Missing(v[0]); }},
        {QStringLiteral("PLACE holds TEXT"), {}, [](Values v) { return Holds(v[0], v[1]); }},
        {QStringLiteral("PLACE is TEXT"), {}, [](Values v) { return Is(v[0], v[1]); }},
        {QStringLiteral("NAME is disabled"), {}, [](Values v) { return IsDisabled(v[0]); }},
        {QStringLiteral("NAME is fullscreen"), {}, [](Values v) { return FillsScreen(v[0]); }},
    };
}
