#include "mainwindow/log/LogPane.h"

#include "core/base/Clock.h"
#include "core/base/ProgramLog.h"
#include "core/settings/Settings.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/ListHelpers.h"
#include "mainwindow/base/LongTime.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/AddressesFromSelection.h"
#include "mainwindow/lists/ListGestures.h"
#include "mainwindow/lists/ListNotice.h"
#include "mainwindow/lists/PaneCover.h"
#include "mainwindow/lists/WaitingMark.h"
#include "mainwindow/log/LogList.h"
#include "mainwindow/log/LogReader.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <algorithm>

namespace {

constexpr int DefaultMaxLines = 500;
constexpr std::chrono::seconds TimeToNotice(1); // a line that highlighted itself
constexpr std::chrono::milliseconds Settling(50);
constexpr int MostCounted = 50'000; // records; counting on would keep the operator waiting

// How the settings name the views.
const QString TextView = QStringLiteral("text");
const QString HexView = QStringLiteral("hex");

std::optional<LogDataView> DataViewOf(const QString& stored)
{
    if (stored == TextView)
        return LogDataView::Text;
    if (stored == HexView)
        return LogDataView::Hex;
    return std::nullopt;
}

} // namespace

LogPane::LogPane(const Parts& parts, QWidget* parent)
    : QWidget(parent),
      m_parts(parts),
      m_model(new LogModel(parts.strings, this)),
      lvLog(new LogList(*m_model, this)),
      m_cover(NewPaneCover(parts.strings, this)),
      m_notice(new ListNotice(QStringLiteral("logNotice"), this)),
      m_period(new LogPeriodBar(parts.strings, this))
{
    setObjectName(QStringLiteral("picLog"));
    BuildList();
    FollowRecords(*m_model, m_parts.eventLog, m_markDue);
    QPushButton& newest =
        m_notice->AddButton(QStringLiteral("cmdShowNewest"), parts.strings.LoadString(MainText::ShowNewest));
    connect(&newest, &QPushButton::clicked, this, [this] { Reload(Part::Newest); });
    connect(m_period, &LogPeriodBar::ButtonClicked, this, &LogPane::RunToolButton);
}

void LogPane::BuildList()
{
    lvLog->setAccessibleName(m_parts.strings.LoadString(MainText::LogColumn));
    SetHeaderFont();
    connect(lvLog->selectionModel(), &QItemSelectionModel::selectionChanged, this, &LogPane::TellSelection);
    connect(lvLog, &QTreeView::clicked, this, &LogPane::TellChosen);
    auto* gestures = new ListGestures(*lvLog);
    gestures->mayCall = [this] { return MayCall(); };
    connect(gestures, &ListGestures::Chosen, this, &LogPane::TellChosen);
    connect(gestures, &ListGestures::CallRequested, this, &LogPane::CallRequested);
    connect(gestures, &ListGestures::ReloadRequested, this, &LogPane::ReloadLog);
    connect(gestures, &ListGestures::MenuRequested, this, &LogPane::MenuRequested);
}

void LogPane::LogShowNewLine(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                             const QString& to, const QString& record, const QString& shown)
{
    if (!m_parts.session.LoggedOn)
        return;
    const QScopedValueRollback quiet(m_changedByProgram, true);
    CheckDayChange(time);
    if (m_model->rowCount() >= MaxLines())
        m_model->RemoveFirst();
    LogLine line =
        m_parts.formatter.LiveLine(time, type, desc, from, to, m_parts.reader.Own(), View(), shown);
    if (!m_parts.eventLog.IsSafe(record)) {
        line.record = record;
        if (!m_markDue.isActive())
            m_markDue.start();
    }
    m_model->Append(line);

    const QModelIndex last = m_model->index(m_model->rowCount() - 1);
    lvLog->WidenFor(last.row());
    lvLog->selectionModel()->setCurrentIndex(last,
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    lvLog->scrollTo(last);
    m_movedByItself = m_parts.clock.Ticks();
}

void LogPane::CheckDayChange(const QDateTime& time)
{
    if (const auto separator = m_parts.formatter.CheckDayChange(time)) {
        m_model->Append(*separator);
        lvLog->WidenFor(m_model->rowCount() - 1);
    }
}

void LogPane::ReloadLog()
{
    Reload(Part::Oldest);
}

void LogPane::Reload(Part part)
{
    if (!m_parts.session.LoggedOn)
        return;
    StorePeriod();
    std::vector<LogLine> lines;
    QString cut;
    m_parts.formatter.ForgetDay();
    m_parts.eventLog.Settle(Settling);
    try {
        const LogDataView view = View();
        const OwnRadio own = m_parts.reader.Own();
        const LogPeriod period{m_period->Unit(), m_parts.settings.LogTimePeriod()};
        const int most = MaxLines() + 1;
        int shown = 0;
        QDateTime oldest;
        QDateTime newest;
        const auto addLine = [&](const StoredEvent& event) {
            if (auto separator = m_parts.formatter.CheckDayChange(event.time))
                lines.push_back(std::move(*separator));
            lines.push_back(m_parts.formatter.StoredLine(event, own, view));
            if (shown++ == 0)
                oldest = event.time;
            newest = event.time;
        };
        if (part == Part::Oldest)
            m_parts.reader.Read(period, most, addLine);
        else
            m_parts.reader.ReadNewest(period, most, addLine);
        cut = shown < most ? QString()
                           : DescribeCut(part, period, shown, part == Part::Oldest ? newest : oldest);
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("message log not read: ") + QString::fromUtf8(failure.what()));
    }

    AppendWaiting(lines);
    const QScopedValueRollback quiet(m_changedByProgram, true);
    m_model->Replace(std::move(lines));
    m_model->ShowWaiting();
    lvLog->Measure();
    SayCut(cut);
    lvLog->scrollToBottom();
}

// What the database does not have yet.
void LogPane::AppendWaiting(std::vector<LogLine>& lines) const
{
    const QList<LogRecord> records = m_parts.eventLog.WaitingRecords();
    if (records.isEmpty())
        return;
    const LogDataView view = DataViewOf(m_parts.settings.LogView()).value_or(LogDataView::Text);
    const OwnRadio own = m_parts.reader.Own();
    for (const LogRecord& record : records) {
        if (auto separator = m_parts.formatter.CheckDayChange(record.time))
            lines.push_back(std::move(*separator));
        lines.push_back(
            m_parts.formatter.StoredLine({record.time, record.type, record.from, record.to, record.desc,
                                          StoredEvent::KeyOf(static_cast<EventType>(record.type))},
                                         own, view));
        if (!m_parts.eventLog.IsSafe(record.id))
            lines.back().record = record.id;
    }
}

// A text that is not a number leaves the stored period as it is.
void LogPane::StorePeriod()
{
    try {
        if (const auto period = m_period->Period())
            m_parts.settings.SetLogTimePeriod(*period);
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("log period not stored: ") + QString::fromUtf8(failure.what()));
    }
}

// The notice for a period that holds more records than are shown, which end or begin at a time; empty when it
// does not.
QString LogPane::DescribeCut(Part part, const LogPeriod& period, int shown, const QDateTime& edge) const
{
    const int total = m_parts.reader.Count(period, MostCounted + 1);
    if (total <= shown)
        return {};
    const QLocale locale;
    const QString count = locale.toString(std::min(total, MostCounted));
    const IStringSource& strings = m_parts.strings;
    return FormatMessage(strings, part == Part::Oldest ? MainText::OldestShown : MainText::NewestShown,
                         {locale.toString(shown),
                          total > MostCounted ? FormatMessage(strings, MainText::MoreThan, {count}) : count,
                          locale.toString(edge.toLocalTime().date(), QLocale::ShortFormat) + u' ' +
                              LongTime(edge.toLocalTime().time())});
}

void LogPane::SayCut(const QString& text)
{
    m_notice->Say(text);
    LayOut();
}

void LogPane::LoadLogDataView()
{
    if (const auto view = DataViewOf(m_parts.settings.LogView()))
        SetLogDataView(*view);
}

void LogPane::ToggleLogDataView()
{
    if (const auto view = DataViewOf(m_parts.settings.LogView()))
        SetLogDataView(*view == LogDataView::Text ? LogDataView::Hex : LogDataView::Text);
}

void LogPane::SetLogDataView(LogDataView view)
{
    Q_EMIT DataViewChanged(view);
    m_lastView = view;
    m_parts.settings.SetLogView(view == LogDataView::Hex ? HexView : TextView);
    ReloadLog();
}

void LogPane::LoadLogPrefs()
{
    lvLog->SetFontStep(0);
    m_period->Load(m_parts.settings);
    lvLog->SetFontStep(m_parts.settings.LogFont());
}

void LogPane::SaveLogPeriod()
{
    m_period->Save(m_parts.settings);
}

void LogPane::Cover(bool on)
{
    lvLog->setVisible(!on);
    m_cover->setVisible(on);
}

std::optional<QString> LogPane::SelectedTag() const
{
    const QString tag = GetSelectedItem(*lvLog).data(LogModel::TagRole).toString();
    return tag.trimmed().isEmpty() ? std::nullopt : std::optional(tag);
}

void LogPane::RunToolButton(LogPeriodBar::Button button)
{
    switch (button) {
    case LogPeriodBar::Button::Refresh:
        return ReloadLog();
    case LogPeriodBar::Button::Clear:
        return ClearDisplay();
    case LogPeriodBar::Button::Font:
        return StepFont();
    }
}

void LogPane::ClearDisplay()
{
    const QScopedValueRollback quiet(m_changedByProgram, true);
    m_model->Clear();
    m_parts.formatter.ForgetDay();
    lvLog->Measure();
    SayCut({});
}

void LogPane::StepFont()
{
    try {
        const int step = m_parts.settings.LogFont() + 1;
        const int next = step >= LogList::FontSteps ? 0 : step;
        lvLog->SetFontStep(next);
        m_parts.settings.SetLogFont(next);
    } catch (const std::exception& failure) {
        lvLog->SetFontStep(0); // the stored size is not one; the next press starts over
        ProgramLog::Write(QStringLiteral("log font: ") + QString::fromUtf8(failure.what()));
    }
}

// The header would inherit the font of the lines.
void LogPane::SetHeaderFont()
{
    QFont header = font();
    header.setFamilies(header.families());
    header.setPointSizeF(header.pointSizeF());
    lvLog->header()->setFont(header);
}

// The operator has changed the selection; deselecting the last line leaves no address.
void LogPane::TellSelection()
{
    if (m_changedByProgram)
        return;
    if (!lvLog->selectionModel()->hasSelection())
        Q_EMIT AddressesChosen({});
    TellChosen();
}

void LogPane::TellChosen()
{
    m_movedByItself.reset();
    if (const auto addresses = AddressesFromSelection(*lvLog, LogModel::TagRole))
        Q_EMIT AddressesChosen(*addresses);
}

// Whether Enter means the highlighted line. A line that highlighted itself a moment ago is not what the
// person looked at: the first Enter only chooses it, the second one calls.
bool LogPane::MayCall()
{
    const bool noticed = !m_movedByItself || m_parts.clock.Ticks() - *m_movedByItself >= TimeToNotice;
    m_movedByItself.reset();
    return noticed;
}

void LogPane::resizeEvent(QResizeEvent*)
{
    LayOut();
}

void LogPane::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange) {
        SetHeaderFont();
        LayOut();
    }
    QWidget::changeEvent(event);
}

void LogPane::LayOut()
{
    const int strip = m_period->HeightAt(width());
    const int notice = m_notice->isHidden() ? 0 : m_notice->heightForWidth(width());
    const int list = std::max(height() - strip - notice, 0);
    lvLog->setGeometry(0, 0, width(), list);
    m_cover->setGeometry(lvLog->geometry());
    m_notice->setGeometry(0, list, width(), notice);
    m_period->setGeometry(0, height() - strip, width(), strip);
}

// The stored view or, while the settings cannot be read, the last one known.
LogDataView LogPane::View()
{
    try {
        m_lastView = DataViewOf(m_parts.settings.LogView()).value_or(LogDataView::Text);
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("log view: ") + QString::fromUtf8(failure.what()));
    }
    return m_lastView;
}

int LogPane::MaxLines() const
{
    try {
        return m_parts.settings.MaxLogSize();
    } catch (const std::exception&) {
        return DefaultMaxLines; // the stored size is not a number
    }
}
