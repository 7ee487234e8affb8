#include "mainwindow/bars/StatusBar.h"

#include "core/base/Clock.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "mainwindow/bars/StatusPanel.h"
#include "mainwindow/base/TextIds.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <algorithm>

namespace {

// Codes of the texts of panel "opcon".
constexpr char16_t InServiceCode = 216;
constexpr char16_t OutOfServiceCode = 215;

constexpr auto NoAddress = "---";
constexpr std::chrono::seconds TimeToRead(2);
constexpr std::chrono::seconds TimeToUnderstand(10); // an outcome, and why

// Of the bar in panel "field".
constexpr int StepsPerMark = 32;
constexpr int Marks = 8;

struct PanelRow {
    const char* name;
    int toolTip; // 0: set with each text
};

// In the order of StatusBar::Part.
constexpr PanelRow Panels[] = {
    {"version", MainText::VersionTip},   {"main", 0},
    {"opcon", MainText::OpConTip},       {"field", MainText::FieldTip},
    {"callsign", MainText::CallsignTip}, {"ident", MainText::IdentTip},
    {"date", MainText::DateTip},         {"time", MainText::TimeTip},
};

QString VersionText()
{
    return QStringLiteral("V%1.%2.%3")
        .arg(VELTORKYN_VERSION_MAJOR)
        .arg(VELTORKYN_VERSION_MINOR, 2, 10, QLatin1Char('0'))
        .arg(VELTORKYN_VERSION_PATCH, 4, 10, QLatin1Char('0'));
}

// n / 32 to the nearest integer; halves go to the even one.
int RoundedMarks(int n)
{
    const int whole = n / StepsPerMark;
    const int twiceRest = 2 * (n % StepsPerMark);
    const bool up = twiceRest > StepsPerMark || (twiceRest == StepsPerMark && whole % 2 == 1);
    return up ? whole + 1 : whole;
}

// Text of the status panel "field": the field strength 0..255 in decimal and a bar of eight characters, one
// "|" for every 32 steps ("100 |||.....").
QString FieldBarText(int fieldStrength)
{
    const int marks = std::clamp(RoundedMarks(std::max(fieldStrength, 0) + 1), 0, Marks);
    return QStringLiteral("%1 %2%3")
        .arg(fieldStrength)
        .arg(QString(marks, QLatin1Char('|')), QString(Marks - marks, QLatin1Char('.')));
}

} // namespace

StatusBar::StatusBar(const IStringSource& strings, const Clock& clock, QWidget* parent)
    : QWidget(parent),
      m_strings(strings),
      m_clock(clock)
{
    setObjectName(QStringLiteral("sbrStatus"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (std::size_t i = 0; i < m_panels.size(); ++i) {
        auto* panel = new StatusPanel(QLatin1String(Panels[i].name), this);
        if (Panels[i].toolTip != 0)
            panel->setProperty("toolTipId", Panels[i].toolTip);
        m_panels[i] = panel;
        row->addWidget(panel, static_cast<Part>(i) == Part::Main ? 1 : 0);
    }
    Panel(Part::Version).setText(VersionText());
    Panel(Part::OperatingCondition).ReserveFor(QStringLiteral("WW"));
    Panel(Part::OperatingCondition).setAccessibleName(strings.LoadString(MainText::ConditionUnknown));
    Panel(Part::FieldStrength).ReserveFor(FieldBarText(0));
    ForgetOwnAddress();

    connect(&m_second, &QTimer::timeout, this, &StatusBar::ShowNow);
    m_second.start(std::chrono::seconds(1));
    ShowNow();
}

void StatusBar::SbrMessage(const QString& text)
{
    m_answersFrom = {};
    m_waitingAnswer.clear();
    m_answerShown = false;
    Put(text);
}

void StatusBar::SbrMessageFirst(const QString& text)
{
    Hold(text, TimeToRead);
}

void StatusBar::ShowOutcome(const QString& text)
{
    Hold(text, TimeToUnderstand);
}

void StatusBar::Hold(const QString& text, std::chrono::seconds time)
{
    SbrMessage(text);
    m_answersFrom = m_clock.Ticks() + time;
}

void StatusBar::ShowAnswer(const QString& text)
{
    if (m_clock.Ticks() < m_answersFrom) {
        m_waitingAnswer = text;
        return;
    }
    SbrMessage(text);
    m_answerShown = true;
}

void StatusBar::ForgetAnswer()
{
    m_waitingAnswer.clear();
    if (m_answerShown)
        SbrMessage({});
}

void StatusBar::Put(const QString& text)
{
    const QDateTime now = m_clock.Now();
    const QLocale locale;
    StatusPanel& panel = Panel(Part::Main);
    panel.setText(text);
    panel.setToolTip(FormatMessage(m_strings, MainText::LastUpdated,
                                   {locale.toString(now.date(), QLocale::LongFormat),
                                    locale.toString(now.time(), QLocale::ShortFormat)}));
}

void StatusBar::ShowOperatingConditions(bool inService, int fieldStrength)
{
    StatusPanel& condition = Panel(Part::OperatingCondition);
    condition.setText(QChar(inService ? InServiceCode : OutOfServiceCode));
    condition.ShowPicture(LoadIcon(inService ? QStringLiteral("inservice") : QStringLiteral("outofservice")));
    condition.setAccessibleName(
        m_strings.LoadString(inService ? MainText::InService : MainText::OutOfService));

    StatusPanel& field = Panel(Part::FieldStrength);
    field.setText(FieldBarText(fieldStrength));
    field.setAccessibleName(
        FormatMessage(m_strings, MainText::FieldStrength, {QString::number(fieldStrength)}));
}

void StatusBar::ForgetOperatingConditions()
{
    for (const Part part : {Part::OperatingCondition, Part::FieldStrength}) {
        StatusPanel& panel = Panel(part);
        panel.setText(QString());
        panel.ShowPicture(QIcon());
        panel.setAccessibleName(QString());
    }
}

void StatusBar::ShowOwnAddress(const QString& callsign, const QString& ident)
{
    Panel(Part::Callsign).setText(callsign);
    Panel(Part::Ident).setText(ident);
}

void StatusBar::ForgetOwnAddress()
{
    ShowOwnAddress(QLatin1String(NoAddress), QLatin1String(NoAddress));
}

void StatusBar::ShowNow()
{
    if (!m_waitingAnswer.isEmpty())
        ShowAnswer(QString(m_waitingAnswer));
    const QDateTime now = m_clock.Now();
    const QLocale locale;
    Panel(Part::Date).setText(locale.toString(now.date(), QLocale::ShortFormat));
    Panel(Part::Time).setText(locale.toString(now.time(), QLocale::ShortFormat));
}

void StatusBar::mouseDoubleClickEvent(QMouseEvent* event)
{
    const std::optional<Part> part = PartAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && part)
        Q_EMIT PanelDoubleClicked(*part);
}

// Accepted, so that the release comes here too.
void StatusBar::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void StatusBar::mouseReleaseEvent(QMouseEvent* event)
{
    const std::optional<Part> part = PartAt(event->position().toPoint());
    if (event->button() == Qt::RightButton && part)
        Q_EMIT PanelMenuRequested(*part, event->globalPosition().toPoint());
}

std::optional<StatusBar::Part> StatusBar::PartAt(const QPoint& place) const
{
    const auto panel = std::find(m_panels.begin(), m_panels.end(), childAt(place));
    if (panel == m_panels.end())
        return std::nullopt;
    return static_cast<Part>(panel - m_panels.begin());
}
