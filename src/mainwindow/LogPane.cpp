#include "mainwindow/LogPane.h"

#include "core/ProgramLog.h"
#include "core/Settings.h"
#include "core/StringSource.h"
#include "mainwindow/AddressesFromSelection.h"
#include "mainwindow/KeyedToolBar.h"
#include "mainwindow/ListGestures.h"
#include "mainwindow/LogDelegate.h"
#include "mainwindow/LogReader.h"
#include "mainwindow/SessionState.h"
#include "mainwindow/TextIds.h"
#include "mainwindow/WholeNumber.h"

#include <QComboBox>
#include <QEvent>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTreeView>
#include <algorithm>

namespace {

constexpr double SmallestFont = 6.75; // points
constexpr int FontSteps = 5;
constexpr int DefaultPeriod = 30;
constexpr int DefaultMaxLines = 500;
constexpr int StripHeight = 25; // below the list, for the period controls
constexpr int Gap = 3;

constexpr const char* TimeUnitCodes[] = {"n", "h", "d"};

} // namespace

LogPane::LogPane(const IStringSource& strings, Settings& settings, LogLineFormatter& formatter,
                 const LogReader& reader, const SessionState& session, QWidget* parent)
    : QWidget(parent),
      m_settings(settings),
      m_formatter(formatter),
      m_reader(reader),
      m_session(session),
      m_model(new LogModel(strings.LoadString(MainText::LogColumn), this))
{
    setObjectName(QStringLiteral("picLog"));
    BuildList(strings);
    BuildPeriodControls(strings);
}

void LogPane::BuildList(const IStringSource& strings)
{
    lvLog = new QTreeView(this);
    lvLog->setObjectName(QStringLiteral("lvLog"));
    lvLog->setAccessibleName(strings.LoadString(MainText::LogColumn));
    lvLog->setModel(m_model);
    lvLog->setItemDelegate(new LogDelegate(lvLog));
    lvLog->setRootIsDecorated(false);
    lvLog->setIndentation(0);
    lvLog->setUniformRowHeights(true);
    lvLog->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lvLog->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvLog->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    lvLog->header()->setSectionsMovable(false);
    lvLog->header()->setStretchLastSection(false);
    SetHeaderFont();
    lvLog->viewport()->installEventFilter(this);

    connect(lvLog->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &LogPane::TellChosenAddresses);
    connect(lvLog, &QTreeView::clicked, this, &LogPane::TellChosenAddresses);
    auto* gestures = new ListGestures(*lvLog);
    connect(gestures, &ListGestures::CallRequested, this, &LogPane::CallRequested);
    connect(gestures, &ListGestures::ReloadRequested, this, &LogPane::ReloadLog);
    connect(gestures, &ListGestures::MenuRequested, this, &LogPane::MenuRequested);
}

void LogPane::BuildPeriodControls(const IStringSource& strings)
{
    tbRefreshLog = new KeyedToolBar(QStringLiteral("tbRefreshLog"), this);
    tbRefreshLog->SetCompact();
    tbRefreshLog->setProperty("accessibleNameId", MainText::LogToolBarName);
    tbRefreshLog->AddButton(QStringLiteral("refresh"), KeyedToolBar::Style::Plain, MainText::RefreshLogTip);
    tbRefreshLog->AddButton(QStringLiteral("clearlog"), KeyedToolBar::Style::Plain, MainText::ClearLogTip);
    tbRefreshLog->AddButton(QStringLiteral("logfont"), KeyedToolBar::Style::Plain, MainText::LogFontTip);
    connect(tbRefreshLog, &KeyedToolBar::ButtonClicked, this, &LogPane::RunToolButton);

    lblSeeLast = new QLabel(this);
    lblSeeLast->setObjectName(QStringLiteral("lblSeeLast"));
    lblSeeLast->setProperty("textId", MainText::SeeLast);
    txtLogPeriod = new QLineEdit(this);
    txtLogPeriod->setObjectName(QStringLiteral("txtLogPeriod"));
    txtLogPeriod->setProperty("textId", MainText::LogPeriod);
    lblSeeLast->setBuddy(txtLogPeriod);
    txtLogPeriod->setToolTip(strings.LoadString(MainText::SeeLast).remove(QLatin1Char('&')).trimmed());
    cmbLogTimeUnit = new QComboBox(this);
    cmbLogTimeUnit->setObjectName(QStringLiteral("cmbLogTimeUnit"));
    cmbLogTimeUnit->setProperty("accessibleNameId", MainText::LogTimeUnitName);
    for (const int id : {MainText::Minutes, MainText::Hours, MainText::Days}) {
        cmbLogTimeUnit->addItem(strings.LoadString(id));
    }
}

void LogPane::LogShowNewLine(const QDateTime& time, EventType type, const QString& desc, const QString& from,
                             const QString& to)
{
    if (!m_session.LoggedOn) {
        return;
    }
    const QScopedValueRollback quiet(m_changedByProgram, true);
    CheckDayChange(time);
    if (m_model->rowCount() >= MaxLines()) {
        m_model->RemoveFirst();
    }
    m_model->Append(m_formatter.LiveLine(time, type, desc, from, to, m_reader.Own(), View()));

    const QModelIndex last = m_model->index(m_model->rowCount() - 1);
    WidenFor(last.row());
    lvLog->selectionModel()->setCurrentIndex(last,
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    lvLog->scrollTo(last);
}

void LogPane::CheckDayChange(const QDateTime& time)
{
    if (const auto separator = m_formatter.CheckDayChange(time)) {
        m_model->Append(*separator);
        WidenFor(m_model->rowCount() - 1);
    }
}

void LogPane::ReloadLog()
{
    if (!m_session.LoggedOn) {
        return;
    }
    std::vector<LogLine> lines;
    m_formatter.ForgetDay();
    try {
        if (const auto period = WholeNumber(txtLogPeriod->text())) {
            m_settings.SetLogTimePeriod(*period);
        }
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("log period not stored: ") + QString::fromUtf8(failure.what()));
    }
    try {
        const QString view = View();
        const OwnRadio own = m_reader.Own();
        const auto addLine = [&](const StoredEvent& event) {
            if (auto separator = m_formatter.CheckDayChange(event.time)) {
                lines.push_back(std::move(*separator));
            }
            lines.push_back(m_formatter.StoredLine(event, own, view));
        };
        m_reader.Read(QLatin1String(TimeUnitCodes[cmbLogTimeUnit->currentIndex()]),
                      m_settings.LogTimePeriod(), MaxLines() + 1, addLine);
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("message log not read: ") + QString::fromUtf8(failure.what()));
    }

    const QScopedValueRollback quiet(m_changedByProgram, true);
    m_model->Replace(std::move(lines));
    m_contentWidth = 0;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        WidenFor(row);
    }
    FitColumn();
    lvLog->scrollToBottom();
}

void LogPane::SetLogDataView(const QString& view)
{
    Q_EMIT DataViewChanged(view);
    m_lastView = view;
    m_settings.SetLogView(view);
    ReloadLog();
}

void LogPane::LoadLogPrefs()
{
    SetFontStep(0);
    const int unit = m_settings.LogTimeUnit();
    cmbLogTimeUnit->setCurrentIndex(unit >= 0 && unit < cmbLogTimeUnit->count() ? unit : 0);
    txtLogPeriod->setText(QString::number(m_settings.LogTimePeriod()));
    SetFontStep(m_settings.LogFont());
}

void LogPane::SaveLogPeriod()
{
    m_settings.SetLogTimePeriod(WholeNumber(txtLogPeriod->text()).value_or(DefaultPeriod));
    m_settings.SetLogTimeUnit(cmbLogTimeUnit->currentIndex());
}

std::optional<QString> LogPane::SelectedTag() const
{
    const QModelIndex current = lvLog->currentIndex();
    if (!current.isValid() || !lvLog->selectionModel()->isSelected(current)) {
        return std::nullopt;
    }
    const QString tag = current.data(LogModel::TagRole).toString();
    return tag.trimmed().isEmpty() ? std::nullopt : std::optional(tag);
}

void LogPane::RunToolButton(const QString& key)
{
    if (key == QLatin1String("refresh")) {
        ReloadLog();
    } else if (key == QLatin1String("clearlog")) {
        ClearDisplay();
    } else if (key == QLatin1String("logfont")) {
        StepFont();
    }
}

void LogPane::ClearDisplay()
{
    const QScopedValueRollback quiet(m_changedByProgram, true);
    m_model->Clear();
    m_formatter.ForgetDay();
    m_contentWidth = 0;
    FitColumn();
}

void LogPane::StepFont()
{
    try {
        const int step = m_settings.LogFont() + 1;
        const int next = step >= FontSteps ? 0 : step;
        SetFontStep(next);
        m_settings.SetLogFont(next);
    } catch (const std::exception& failure) {
        SetFontStep(0); // a stored size that is none; the next press starts over
        ProgramLog::Write(QStringLiteral("log font: ") + QString::fromUtf8(failure.what()));
    }
}

void LogPane::SetFontStep(int step)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(SmallestFont + std::clamp(step, 0, FontSteps - 1));
    lvLog->setFont(font);
    m_contentWidth = 0;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        WidenFor(row);
    }
    FitColumn();
}

// The header would take over the font of the lines.
void LogPane::SetHeaderFont()
{
    QFont header = font();
    header.setFamilies(header.families());
    header.setPointSizeF(header.pointSizeF());
    lvLog->header()->setFont(header);
}

void LogPane::TellChosenAddresses()
{
    if (m_changedByProgram) {
        return;
    }
    if (const auto addresses = AddressesFromSelection(*lvLog, LogModel::TagRole)) {
        Q_EMIT AddressesChosen(*addresses);
    }
}

bool LogPane::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) {
        FitColumn();
    }
    return QWidget::eventFilter(watched, event);
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

// Where the pane is too narrow for all of the period controls, the label goes first: the box has its name as
// tool tip.
void LogPane::LayOut()
{
    const int strip = std::max(StripHeight, fontMetrics().height() + 8);
    lvLog->setGeometry(0, 0, width(), std::max(height() - strip, 0));

    const int top = height() - strip + 1;
    const int rowHeight = strip - 2;
    const QSize bar = tbRefreshLog->sizeHint();
    tbRefreshLog->setGeometry(0, top, bar.width(), rowHeight);

    const int boxWidth = fontMetrics().horizontalAdvance(QStringLiteral("000")) + 12;
    const int labelWidth = lblSeeLast->sizeHint().width();
    const int unitWidth = cmbLogTimeUnit->sizeHint().width();
    int left = bar.width() + Gap;
    const bool labelFits = left + labelWidth + boxWidth + Gap + unitWidth <= width();
    lblSeeLast->setVisible(labelFits);
    if (labelFits) {
        lblSeeLast->setGeometry(left, top, labelWidth, rowHeight);
        left += labelWidth;
    }
    txtLogPeriod->setGeometry(left, top, boxWidth, rowHeight);
    left += boxWidth + Gap;
    cmbLogTimeUnit->setGeometry(left, top, std::clamp(width() - left, 0, unitWidth), rowHeight);
}

// The column is as wide as its widest line and at least as the list.
void LogPane::FitColumn()
{
    lvLog->header()->resizeSection(0, std::max(m_contentWidth, lvLog->viewport()->width()));
}

void LogPane::WidenFor(int row)
{
    const int needed = lvLog->sizeHintForIndex(m_model->index(row)).width();
    if (needed > m_contentWidth) {
        m_contentWidth = needed;
        FitColumn();
    }
}

// The stored view; the last one known while the settings cannot be read.
QString LogPane::View()
{
    try {
        m_lastView = m_settings.LogView();
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("log view: ") + QString::fromUtf8(failure.what()));
    }
    return m_lastView;
}

int LogPane::MaxLines() const
{
    try {
        return m_settings.MaxLogSize();
    } catch (const std::exception&) {
        return DefaultMaxLines; // a stored size that is no number
    }
}
