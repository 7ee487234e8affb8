#include "mainwindow/log/LogPeriodBar.h"

#include "core/settings/Settings.h"
#include "core/texts/StringSource.h"
#include "mainwindow/bars/KeyedToolBar.h"
#include "mainwindow/base/TextIds.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int DefaultPeriod = 30;
constexpr int StripHeight = 25;
constexpr int Gap = 3;

// The whole number that a typed text stands for; a fraction is rounded, halves to the even number. Nothing
// for a text that is not a number, or is one that a 32-bit integer cannot hold.
std::optional<int> WholeNumber(const QString& text)
{
    bool number = false;
    double value = QLocale::c().toDouble(text.trimmed(), &number);
    if (!number)
        value = QLocale().toDouble(text.trimmed(), &number);
    if (!number || !std::isfinite(value))
        return std::nullopt;
    const double rounded = std::nearbyint(value); // the default rounding mode takes halves to the even number
    if (rounded < std::numeric_limits<int>::min() || rounded > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(rounded);
}

} // namespace

LogPeriodBar::LogPeriodBar(const IStringSource& strings, QWidget* parent) : QWidget(parent)
{
    tbRefreshLog = new ToolBarOf<Button>(QStringLiteral("tbRefreshLog"), this);
    tbRefreshLog->SetCompact();
    tbRefreshLog->setProperty("accessibleNameId", MainText::LogToolBarName);
    tbRefreshLog->AddButton(Button::Refresh, QStringLiteral("refresh"), KeyedToolBar::Style::Plain,
                            MainText::RefreshLogTip);
    tbRefreshLog->AddButton(Button::Clear, QStringLiteral("clearlog"), KeyedToolBar::Style::Plain,
                            MainText::ClearLogTip);
    tbRefreshLog->AddButton(Button::Font, QStringLiteral("logfont"), KeyedToolBar::Style::Plain,
                            MainText::LogFontTip);
    tbRefreshLog->OnClick([this](Button button) { Q_EMIT ButtonClicked(button); });

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
    // In the order of TimeUnit.
    for (const int id : {MainText::Minutes, MainText::Hours, MainText::Days})
        cmbLogTimeUnit->addItem(strings.LoadString(id));
}

void LogPeriodBar::Load(const Settings& settings)
{
    cmbLogTimeUnit->setCurrentIndex(static_cast<int>(settings.LogTimeUnit()));
    txtLogPeriod->setText(QString::number(settings.LogTimePeriod()));
}

void LogPeriodBar::Save(Settings& settings) const
{
    settings.SetLogTimePeriod(Period().value_or(DefaultPeriod));
    settings.SetLogTimeUnit(Unit());
}

std::optional<int> LogPeriodBar::Period() const
{
    return WholeNumber(txtLogPeriod->text());
}

TimeUnit LogPeriodBar::Unit() const
{
    return static_cast<TimeUnit>(cmbLogTimeUnit->currentIndex());
}

int LogPeriodBar::RowHeight() const
{
    return std::max(StripHeight, fontMetrics().height() + 8);
}

int LogPeriodBar::BoxWidth() const
{
    return fontMetrics().horizontalAdvance(QStringLiteral("000")) + 12;
}

int LogPeriodBar::PeriodWidth() const
{
    return lblSeeLast->sizeHint().width() + BoxWidth() + Gap + cmbLogTimeUnit->sizeHint().width();
}

bool LogPeriodBar::FitsInOneRow(int width) const
{
    return tbRefreshLog->sizeHint().width() + Gap + PeriodWidth() <= width;
}

int LogPeriodBar::HeightAt(int width) const
{
    return FitsInOneRow(width) ? RowHeight() : 2 * RowHeight();
}

void LogPeriodBar::resizeEvent(QResizeEvent*)
{
    LayOut();
}

void LogPeriodBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange)
        LayOut();
    QWidget::changeEvent(event);
}

// Where even the second row is too narrow the label is dropped: the box has its name as a tool tip.
void LogPeriodBar::LayOut()
{
    const bool oneRow = FitsInOneRow(width());
    const int row = RowHeight() - 2;
    const int barWidth = tbRefreshLog->sizeHint().width();
    tbRefreshLog->setGeometry(0, 1, barWidth, row);

    const int top = oneRow ? 1 : RowHeight() + 1;
    int left = oneRow ? barWidth + Gap : 0;
    const bool labelFits = left + PeriodWidth() <= width();
    lblSeeLast->setVisible(labelFits);
    if (labelFits) {
        const int labelWidth = lblSeeLast->sizeHint().width();
        lblSeeLast->setGeometry(left, top, labelWidth, row);
        left += labelWidth;
    }
    txtLogPeriod->setGeometry(left, top, BoxWidth(), row);
    left += BoxWidth() + Gap;
    cmbLogTimeUnit->setGeometry(left, top, std::clamp(width() - left, 0, cmbLogTimeUnit->sizeHint().width()),
                                row);
}
