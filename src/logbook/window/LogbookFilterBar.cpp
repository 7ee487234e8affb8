#include "logbook/window/LogbookFilterBar.h"

#include "core/texts/StringSource.h"
#include "logbook/window/TextIds.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr std::chrono::milliseconds AfterTheLastKey{150};
constexpr int LongestText = 255;

QCheckBox* CheckBox(const char* name, int textId, QWidget* parent)
{
    auto* box = new QCheckBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setProperty("textId", textId);
    return box;
}

QLineEdit* TextField(const char* name, int tipId, QWidget* parent)
{
    auto* field = new QLineEdit(parent);
    field->setObjectName(QLatin1String(name));
    field->setProperty("toolTipId", tipId);
    field->setMaxLength(LongestText);
    field->setClearButtonEnabled(true);
    return field;
}

QComboBox* Choice(const char* name, int firstId, int choices, const IStringSource& strings, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(QLatin1String(name));
    for (int choice = 0; choice < choices; ++choice)
        box->addItem(strings.LoadString(firstId + choice));
    return box;
}

} // namespace

LogbookFilterBar::LogbookFilterBar(const IStringSource& strings, const QDateTime& now, QWidget* parent)
    : QWidget(parent),
      m_grid(new QGridLayout(this)),
      txtSearch(TextField("txtSearch", LogbookText::SearchTip, this)),
      txtParty(TextField("txtParty", LogbookText::PartyTip, this)),
      cmbKind(Choice("cmbKind", LogbookText::AllKinds, 4, strings, this)),
      cmbDirection(Choice("cmbDirection", LogbookText::BothWays, 3, strings, this)),
      chkEmergency(CheckBox("chkEmergency", LogbookText::EmergenciesOnly, this)),
      chkSince(CheckBox("chkSince", LogbookText::Since, this)),
      chkUntil(CheckBox("chkUntil", LogbookText::Until, this))
{
    m_grid->setContentsMargins(0, 0, 0, 0);
    Label(LogbookText::Search, txtSearch, 0, 0);
    Label(LogbookText::Party, txtParty, 0, 2);
    Label(LogbookText::Kind, cmbKind, 0, 4);
    Label(LogbookText::Direction, cmbDirection, 0, 6);
    m_grid->addWidget(chkEmergency, 0, 8);
    m_grid->setColumnStretch(1, 2);
    m_grid->setColumnStretch(3, 1);
    AddTimes(now);

    m_typed.setSingleShot(true);
    m_typed.setInterval(AfterTheLastKey);
    connect(&m_typed, &QTimer::timeout, this, &LogbookFilterBar::FilterChanged);
    for (const QLineEdit* field : {txtSearch, txtParty})
        connect(field, &QLineEdit::textChanged, this, [this] { m_typed.start(); });
    for (const QComboBox* box : {cmbKind, cmbDirection})
        connect(box, &QComboBox::currentIndexChanged, this, &LogbookFilterBar::Tell);
    for (const QCheckBox* box : {chkEmergency, chkSince, chkUntil})
        connect(box, &QCheckBox::toggled, this, &LogbookFilterBar::Tell);
    connect(chkSince, &QCheckBox::toggled, txtSince, &QWidget::setEnabled);
    connect(chkUntil, &QCheckBox::toggled, txtUntil, &QWidget::setEnabled);
    for (const QDateTimeEdit* field : {txtSince, txtUntil})
        connect(field, &QDateTimeEdit::dateTimeChanged, this, [this] { m_typed.start(); });
}

void LogbookFilterBar::Label(int textId, QWidget* field, int row, int column)
{
    auto* label = new QLabel(this);
    label->setProperty("textId", textId);
    label->setBuddy(field);
    field->setProperty("accessibleNameId", textId);
    m_grid->addWidget(label, row, column);
    m_grid->addWidget(field, row, column + 1);
}

QDateTimeEdit* LogbookFilterBar::TimeField(const char* name, int accessibleNameId, const QDateTime& time)
{
    auto* field = new QDateTimeEdit(time, this);
    field->setObjectName(QLatin1String(name));
    field->setProperty("accessibleNameId", accessibleNameId);
    field->setCalendarPopup(true);
    return field;
}

void LogbookFilterBar::AddTimes(const QDateTime& now)
{
    const QDateTime midnight = now.date().startOfDay();
    txtSince = TimeField("txtSince", LogbookText::SinceTime, midnight);
    txtUntil = TimeField("txtUntil", LogbookText::UntilTime, midnight.addDays(1));
    txtGoTo = TimeField("txtGoTo", LogbookText::GoToTime, now);
    txtSince->setEnabled(false);
    txtUntil->setEnabled(false);
    auto* row = new QHBoxLayout;
    for (QWidget* widget : std::initializer_list<QWidget*>{chkSince, txtSince, chkUntil, txtUntil})
        row->addWidget(widget);
    row->addStretch();
    auto* label = new QLabel(this);
    label->setProperty("textId", LogbookText::GoTo);
    label->setBuddy(txtGoTo);
    auto* go = new QPushButton(this);
    go->setObjectName(QStringLiteral("cmdGoTo"));
    go->setProperty("textId", LogbookText::Go);
    row->addWidget(label);
    row->addWidget(txtGoTo);
    row->addWidget(go);
    m_grid->addLayout(row, 1, 0, 1, 9);
    connect(go, &QPushButton::clicked, this, [this] { Q_EMIT TimeChosen(txtGoTo->dateTime().toUTC()); });
}

// At once; what was typed just before is included.
void LogbookFilterBar::Tell()
{
    m_typed.stop();
    Q_EMIT FilterChanged();
}

LogFilter LogbookFilterBar::Filter() const
{
    LogFilter filter;
    filter.text = txtSearch->text();
    filter.party = txtParty->text();
    if (const int kind = cmbKind->currentIndex(); kind > 0)
        filter.kinds = {kind}; // in the order of EventType
    filter.direction = std::max(cmbDirection->currentIndex(), 0);
    filter.emergency = chkEmergency->isChecked();
    if (chkSince->isChecked())
        filter.since = txtSince->dateTime().toUTC();
    if (chkUntil->isChecked())
        filter.until = txtUntil->dateTime().toUTC();
    return filter;
}

void LogbookFilterBar::FocusSearch()
{
    txtSearch->setFocus();
    txtSearch->selectAll();
}
