#include "mainwindow/scada/ScadaPane.h"

#include "core/base/Clock.h"
#include "core/desktop/Prompt.h"
#include "core/settings/Settings.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "core/widgets/ListHelpers.h"
#include "core/widgets/PlainKey.h"
#include "mainwindow/base/LongTime.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/OutcomeDelegate.h"
#include "mainwindow/scada/ScadaGuardMenu.h"
#include "mainwindow/scada/ScadaModel.h"
#include "radio/facade/Map27Executive.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QTextDocument>
#include <QTimer>
#include <algorithm>

namespace {

constexpr int LeastLines = 3; // of a list
constexpr std::chrono::seconds AgeingPause{10};

QLabel* NewLabel(const char* name, int textId, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setProperty("textId", textId);
    return label;
}

// Says whose values are shown, in two lines; names and addresses in it are never taken for markup. A pane
// that is too narrow cuts it at the end.
QLabel* NewSourceLabel(const char* name, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return label;
}

} // namespace

ScadaPane::ScadaPane(const Parts& parts, QWidget* parent)
    : QWidget(parent),
      m_parts(parts),
      m_sensors(new ScadaModel(ScadaModel::Kind::Sensors, parts.strings, this)),
      m_controls(new ScadaModel(ScadaModel::Kind::Controls, parts.strings, this)),
      m_switch(parts.executive),
      m_guard(parts.database),
      m_ageing(new QTimer(this))
{
    setObjectName(QStringLiteral("picScada"));
    Build();
    connect(m_ageing, &QTimer::timeout, this, &ScadaPane::ShowUnit);
    m_ageing->start(AgeingPause);
    for (ScadaModel* model : {m_sensors, m_controls}) {
        connect(
            model, &ScadaModel::Renamed, this,
            [this, model](int item, const QString& name) { StoreName(*model, item, name); });
    }
}

void ScadaPane::Build()
{
    QLabel* label = NewLabel("lblScada", MainText::ScadaUnit, this);
    cmbScadaUnit = new QComboBox(this);
    cmbScadaUnit->setObjectName(QStringLiteral("cmbScadaUnit"));
    cmbScadaUnit->setEditable(true);
    cmbScadaUnit->setInsertPolicy(QComboBox::NoInsert);
    cmbScadaUnit->setCompleter(nullptr);
    cmbScadaUnit->installEventFilter(this);
    connect(cmbScadaUnit, &QComboBox::editTextChanged, this, &ScadaPane::ShowUnit);
    label->setBuddy(cmbScadaUnit);
    lblSensors = NewSourceLabel("lblSensors", this);
    lblControls = NewSourceLabel("lblControls", this);
    QListView* sensors = NewList("lvSensors", MainText::SensorsName, *m_sensors);
    lvControls = NewList("lvControls", MainText::ControlsName, *m_controls);
    lvControls->installEventFilter(this);
    // After the list has done with the click: a box within it would let a name be edited behind itself.
    connect(lvControls, &QListView::doubleClicked, this, &ScadaPane::SwitchSelected, Qt::QueuedConnection);

    auto* grid = new QGridLayout(NewContent());
    grid->setContentsMargins(4, 4, 4, 4);
    grid->setSpacing(4);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
    grid->addWidget(label, 0, 0);
    grid->addWidget(cmbScadaUnit, 0, 1);
    grid->addWidget(lblSensors, 1, 0);
    grid->addWidget(lblControls, 1, 1);
    grid->addWidget(sensors, 2, 0);
    grid->addWidget(lvControls, 2, 1);
    grid->addWidget(NewButton("cmdQrySensors", MainText::QuerySensors, ScadaCode::QuerySensors), 3, 0);
    grid->addWidget(NewButton("cmdQryControls", MainText::QueryControls, ScadaCode::QueryControls), 3, 1);
    grid->addWidget(NewButton("cmdALLON", MainText::AllOn, ScadaCode::AllOn), 4, 0);
    grid->addWidget(NewButton("cmdALLOFF", MainText::AllOff, ScadaCode::AllOff), 4, 1);
}

// The panel scrolls where a small screen leaves no room for all of it.
QWidget* ScadaPane::NewContent()
{
    auto* area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus); // what is in it scrolls it
    m_content = new QWidget;
    m_content->setMinimumWidth(1); // narrower than its captions rather than scrolled sideways
    area->setWidget(m_content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(area);
    return m_content;
}

QSize ScadaPane::minimumSizeHint() const
{
    return m_content->minimumSizeHint();
}

QListView* ScadaPane::NewList(const char* name, int accessibleNameId, ScadaModel& model)
{
    auto* list = new QListView(this);
    list->setObjectName(QLatin1String(name));
    list->setProperty("accessibleNameId", accessibleNameId);
    list->setModel(&model);
    list->setItemDelegate(new OutcomeDelegate(list));
    list->setIconSize(IconSize(*this));
    list->setMinimumHeight(LeastLines * fontMetrics().lineSpacing()); // a small window has to hold the pane
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list, &QListView::customContextMenuRequested, this,
            [this, list](const QPoint& place) { ShowGuardMenu(*list, place); });
    list->setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed);
    return list;
}

QWidget* ScadaPane::NewButton(const char* name, int textId, int statusCode)
{
    auto* button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setProperty("textId", textId);
    connect(button, &QPushButton::clicked, this, [this, statusCode] {
        if (MayCommandAll(statusCode))
            Command(cmbScadaUnit->currentText(), statusCode);
    });
    return button;
}

void ScadaPane::Command(const QString& unit, int statusCode)
{
    m_parts.executive.SendStatus(unit, statusCode, Map27Executive::Purpose::Command);
}

void ScadaPane::Load()
{
    for (int item = 0; item < ScadaItemCount; ++item) {
        m_sensors->SetName(item, m_parts.settings.ScadaSensorName(item));
        m_controls->SetName(item, m_parts.settings.ScadaControlName(item));
    }
    cmbScadaUnit->setEditText(m_parts.settings.ScadaLastUnit());
    ShowUnit();
}

void ScadaPane::StoreUnit()
{
    m_parts.settings.SetScadaLastUnit(cmbScadaUnit->currentText());
}

void ScadaPane::StoreName(ScadaModel& model, int item, const QString& name)
{
    try {
        if (&model == m_sensors)
            m_parts.settings.SetScadaSensorName(item, name);
        else
            m_parts.settings.SetScadaControlName(item, name);
        model.SetName(item, name);
    } catch (const std::exception& failure) {
        m_parts.prompt.ShowWarning(DescribeError(failure, m_parts.strings));
    }
}

QString ScadaPane::ChosenUnit() const
{
    return cmbScadaUnit->currentText().trimmed();
}

// In full, as reports give it; what cannot be an address is looked up by the name under which it reported.
QString ScadaPane::AddressOf(const QString& unit) const
{
    try {
        return m_parts.executive.MakeFullAddress(m_parts.executive.LookupIdent(unit));
    } catch (const std::exception&) {
        const auto station = std::find_if(m_stations.begin(), m_stations.end(), [&](const auto& known) {
            return known.second.name.compare(unit, Qt::CaseInsensitive) == 0;
        });
        return station != m_stations.end() ? station->first : unit;
    }
}

void ScadaPane::ShowUnit()
{
    const QString unit = ChosenUnit();
    const auto known = m_stations.find(unit.isEmpty() ? m_reportedLast : AddressOf(unit));
    ScadaStation nothing;
    nothing.name = unit;
    const ScadaStation& shown = known != m_stations.end() ? known->second : nothing;
    const QDateTime now = m_parts.clock.Now();
    m_sensors->Show(shown.sensors, m_guard.IsOld(shown.sensorsTime, now));
    m_controls->Show(shown.controls, m_guard.IsOld(shown.controlsTime, now));
    for (int control = 0; control < ScadaItemCount; ++control)
        m_controls->MarkCritical(control, m_guard.IsCritical(control));
    ShowSource(*lblSensors, MainText::SensorsName, shown, shown.sensorsTime);
    ShowSource(*lblControls, MainText::ControlsName, shown, shown.controlsTime);
}

// With the date: a report may be older than the shift.
void ScadaPane::ShowSource(QLabel& label, int kindId, const ScadaStation& station, const QDateTime& time)
{
    const IStringSource& strings = m_parts.strings;
    int id = MainText::ScadaReported;
    QString when;
    if (time.isValid()) {
        const QDateTime local = time.toLocalTime();
        when = QLocale().toString(local.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
               LongTime(local.time());
    } else {
        id = station.name.isEmpty() ? MainText::ScadaNoUnit : MainText::ScadaNotReported;
    }
    QString text = FormatMessage(strings, id, {strings.LoadString(kindId), station.name, when});
    const bool old = m_guard.IsOld(time, m_parts.clock.Now());
    if (old)
        text = FormatMessage(strings, MainText::OldValue, {text});
    label.setForegroundRole(old ? QPalette::PlaceholderText : QPalette::WindowText);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    label.setText(text);
    label.setToolTip(Qt::convertFromPlainText(text));
}

// The second step of a switch that is marked as critical. What was reported meanwhile has to be looked at
// first.
bool ScadaPane::MaySwitch(int control, bool off)
{
    if (!m_guard.IsCritical(control))
        return true;
    const QModelIndex index = m_controls->index(control);
    const QVariant seen = index.data(ScadaModel::PictureRole);
    if (seen == QLatin1String("cwait"))
        return false;
    const QString question =
        FormatMessage(m_parts.strings, off ? MainText::SwitchCriticalOff : MainText::SwitchCriticalOn,
                      {QString::number(control), index.data(Qt::EditRole).toString(), ChosenUnit()});
    return m_parts.prompt.AskConfirmation(question) && m_parts.session.LoggedOn &&
           index.data(ScadaModel::PictureRole) == seen;
}

bool ScadaPane::IsOutstation(const QString& party) const
{
    const QString address = AddressOf(party);
    const QString chosen = ChosenUnit();
    return m_stations.contains(address) || (!chosen.isEmpty() && AddressOf(chosen) == address);
}

bool ScadaPane::MayBeSent(const QString& party, int statusCode)
{
    if (!m_guard.HasCritical() || !IsOutstation(party))
        return true;
    QString question;
    for (int control = 0; control < ScadaItemCount; ++control) {
        const bool off = statusCode == ScadaCode::SwitchOff(control);
        if ((off || statusCode == ScadaCode::SwitchOn(control)) && m_guard.IsCritical(control))
            question = FormatMessage(
                m_parts.strings, off ? MainText::SwitchCriticalOff : MainText::SwitchCriticalOn,
                {QString::number(control), m_controls->index(control).data(Qt::EditRole).toString(), party});
    }
    if (statusCode == ScadaCode::AllOn || statusCode == ScadaCode::AllOff)
        question = FormatMessage(
            m_parts.strings,
            statusCode == ScadaCode::AllOn ? MainText::AllCriticalOn : MainText::AllCriticalOff, {party});
    return question.isEmpty() || (m_parts.prompt.AskConfirmation(question) && m_parts.session.LoggedOn);
}

bool ScadaPane::MayCommandAll(int statusCode)
{
    const bool switches = statusCode == ScadaCode::AllOn || statusCode == ScadaCode::AllOff;
    if (!switches || !m_guard.HasCritical())
        return true;
    const int question = statusCode == ScadaCode::AllOn ? MainText::AllCriticalOn : MainText::AllCriticalOff;
    return m_parts.prompt.AskConfirmation(FormatMessage(m_parts.strings, question, {ChosenUnit()})) &&
           m_parts.session.LoggedOn;
}

void ScadaPane::ShowGuardMenu(QListView& list, const QPoint& place)
{
    if (!m_parts.session.Administrator)
        return;
    const QModelIndex item = list.indexAt(place);
    ScadaGuardMenu menu{m_parts.strings, m_parts.prompt, m_guard, [this] { ShowUnit(); }};
    menu.PopUp(*this, list.viewport()->mapToGlobal(place), &list == lvControls ? item.row() : -1);
}

void ScadaPane::SwitchSelected()
{
    const QModelIndex control = GetSelectedItem(*lvControls);
    if (!m_parts.session.LoggedOn || !control.isValid())
        return;
    const QString unit = ChosenUnit();
    if (unit.isEmpty()) { // nobody is commanded: the radio link says so, and no control waits
        Command(unit, ScadaCode::SwitchOn(control.row()));
        return;
    }
    // The name may have another address by now: the operator has to see that one's values first.
    const QVariant seen = control.data(ScadaModel::PictureRole);
    ShowUnit();
    if (control.data(ScadaModel::PictureRole) != seen)
        return;
    if (!MaySwitch(control.row(), seen == QLatin1String("con")))
        return;
    ScadaStation& station = m_stations[AddressOf(unit)];
    if (station.name.isEmpty())
        station.name = unit;
    if (m_switch.Switch(unit, station.controls, control.row()))
        ShowUnit();
}

// Enter switches. While a name is edited it belongs to the editor, which hands it on to the list.
bool ScadaPane::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lvControls && event->type() == QEvent::KeyPress && lvControls->hasFocus() &&
        IsPlainEnter(*static_cast<QKeyEvent*>(event))) {
        SwitchSelected();
        return true;
    }
    // The wheel would choose another unit unnoticed.
    if (watched == cmbScadaUnit && event->type() == QEvent::Wheel)
        return true;
    return QWidget::eventFilter(watched, event);
}

ScadaStation& ScadaPane::Reporting(const ScadaSource& source)
{
    m_reportedLast = source.dial;
    ScadaStation& station = m_stations[source.dial];
    station.name = source.callsign;
    OfferUnit(source.callsign);
    return station;
}

// Units that have reported can be chosen from the list; what is typed stays as it is.
void ScadaPane::OfferUnit(const QString& name)
{
    if (cmbScadaUnit->findText(name, Qt::MatchFixedString) >= 0)
        return;
    const QSignalBlocker quiet(cmbScadaUnit);
    const QString typed = cmbScadaUnit->currentText();
    const int place = cmbScadaUnit->lineEdit()->cursorPosition();
    cmbScadaUnit->addItem(name);
    cmbScadaUnit->setCurrentIndex(-1);
    cmbScadaUnit->setEditText(typed);
    cmbScadaUnit->lineEdit()->setCursorPosition(place);
}

void ScadaPane::UpdateScadaSensors(const QString& bits, const ScadaSource& source)
{
    ScadaStation& station = Reporting(source);
    ApplyReport(station.sensors, bits);
    station.sensorsTime = source.time;
    ShowUnit();
}

void ScadaPane::UpdateScadaControls(const QString& bits, const ScadaSource& source)
{
    ScadaStation& station = Reporting(source);
    ApplyReport(station.controls, bits);
    station.controlsTime = source.time;
    ShowUnit();
}

void ScadaPane::ReflectScadaControl()
{
    if (m_switch.Reflect())
        ShowUnit();
}

void ScadaPane::CancelScadaControl()
{
    if (m_switch.Cancel())
        ShowUnit();
}
