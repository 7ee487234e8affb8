#include "app/TourScript.h"

#include "app/Demonstration.h"
#include "app/TourHand.h"
#include "core/Errors.h"
#include "core/StringSource.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QScreen>

namespace {

QStringList LogLines()
{
    QStringList lines;
    const auto* view = qobject_cast<QAbstractItemView*>(TourHand::Find(QStringLiteral("lvLog")));
    for (int row = 0; view && row < view->model()->rowCount(); ++row)
        lines.append(view->model()->index(row, 0).data().toString());
    return lines;
}

QString Quoted(const QString& text)
{
    return QStringLiteral("\"%1\"").arg(text);
}

} // namespace

TourScript::TourScript(const IStringSource& strings, Demonstration& demonstration)
    : m_strings(strings),
      m_demonstration(demonstration)
{
}

std::vector<TourStep> TourScript::Steps()
{
    m_steps.clear();
    FirstStart();
    LogOn();
    Messages();
    OutgoingCalls();
    IncomingCalls();
    DutyStatus();
    Regroup();
    RegroupNotDone();
    NamesAndUngroup();
    Outstation();
    Recovery();
    Window();
    LogOff();
    Administration();
    FleetPlan();
    AnnParameters();
    return m_steps;
}

void TourScript::Add(const QString& name, const QString& expected, std::function<void()> act, Look look)
{
    m_steps.push_back({.name = name, .expected = expected, .act = std::move(act), .look = std::move(look)});
}

void TourScript::SelectMessage(const QString& selector)
{
    TourHand::Click(QStringLiteral("tbMessageSelector_") + selector);
}

void TourScript::Radio(const QString& command)
{
    const QString answer = m_demonstration.TellRadio(command);
    if (!answer.startsWith(QLatin1String("ok")))
        throw Error(ErrorCode::General,
                    QStringLiteral("the radio answered \"%1\" to \"%2\"").arg(answer, command));
}

QString TourScript::Text(int id) const
{
    return m_strings.LoadString(id);
}

TourScript::Look TourScript::Shows(const QString& widget, const QString& text) const
{
    return [=] {
        const QString seen = TourHand::TextOf(widget);
        return seen.trimmed() == text.trimmed() ? QString() : Quoted(seen);
    };
}

TourScript::Look TourScript::Contains(const QString& widget, const QString& text) const
{
    return [=] {
        const QString seen = TourHand::TextOf(widget);
        return seen.contains(text) ? QString() : Quoted(seen);
    };
}

TourScript::Look TourScript::Visible(const QString& widget) const
{
    return [=] { return TourHand::IsVisible(widget) ? QString() : widget + QStringLiteral(" not shown"); };
}

TourScript::Look TourScript::Hidden(const QString& widget) const
{
    return [=] { return TourHand::IsVisible(widget) ? widget + QStringLiteral(" still shown") : QString(); };
}

TourScript::Look TourScript::Box(int textId) const
{
    const QString expected = Text(textId);
    return [expected] {
        const QString seen = TourHand::TextOf(QStringLiteral("promptBox"));
        return seen == expected ? QString() : QStringLiteral("box with ") + Quoted(seen);
    };
}

TourScript::Look TourScript::LogShows(const QString& text) const
{
    return [text] {
        const QStringList lines = LogLines();
        for (const QString& line : lines) {
            if (line.contains(text))
                return QString();
        }
        return QStringLiteral("log with last line ") + Quoted(lines.isEmpty() ? QString() : lines.last());
    };
}

TourScript::Look TourScript::LogLacks(const QString& text) const
{
    return [this, text] {
        return LogShows(text)().isEmpty() ? QStringLiteral("log with ") + Quoted(text) : QString();
    };
}

TourScript::Look TourScript::FillsScreen(bool fills)
{
    return [fills] {
        const QWidget* window = TourHand::Find(QStringLiteral("winMain"));
        const QSize size = window->size();
        const bool whole = size == window->screen()->size();
        return whole == fills ? QString() : QStringLiteral("%1 by %2").arg(size.width()).arg(size.height());
    };
}

TourScript::Look TourScript::All(std::vector<Look> looks)
{
    return [looks = std::move(looks)] {
        for (const Look& look : looks) {
            const QString seen = look();
            if (!seen.isEmpty())
                return seen;
        }
        return QString();
    };
}
