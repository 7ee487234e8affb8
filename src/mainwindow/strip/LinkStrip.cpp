#include "mainwindow/strip/LinkStrip.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/NoticeColours.h"
#include "mainwindow/strip/AttentionPanel.h"
#include "mainwindow/strip/StripRow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

using namespace NoticeColours;

LinkStrip::LinkStrip(const IStringSource& strings, const Clock& clock, AttentionPanel& attention,
                     QWidget* parent)
    : QWidget(parent),
      m_strings(strings),
      m_clock(clock),
      m_attention(attention)
{
    setObjectName(QStringLiteral("linkStrip"));
    const QString dismiss = m_strings.LoadString(MainText::Dismiss);
    BuildRadioRows();
    m_stateRow = BuildStateRow();
    m_databaseRow = NewRow("database", "warning", WarningBack, WarningText);
    m_soundRow = NewRow("sound", "warning", WarningBack, WarningText);
    m_soundRow->AddButton(QStringLiteral("cmdDismissSound"), dismiss, [this] { ShowSilent({}); });
    m_doubtRow = NewRow("numbering", "warning", WarningBack, WarningText);
    m_doubtRow->AddButton(QStringLiteral("cmdDismissNumbering"), dismiss, [this] { ShowDoubts({}); });

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(&m_attention);
    connect(&m_attention, &AttentionPanel::ContentChanged, this, &LinkStrip::ContentChanged);
    for (QWidget* row : {static_cast<QWidget*>(m_callRow), static_cast<QWidget*>(m_inUseRow),
                         static_cast<QWidget*>(m_failedRow), m_stateRow, static_cast<QWidget*>(m_soundRow),
                         static_cast<QWidget*>(m_databaseRow), static_cast<QWidget*>(m_doubtRow)}) {
        rows->addWidget(row);
        row->hide();
    }
}

StripRow* LinkStrip::NewRow(const char* topic, const char* picture, QRgb back, QRgb text)
{
    return new StripRow(QLatin1String(topic), QLatin1String(picture), back, text, m_clock, this);
}

void LinkStrip::BuildRadioRows()
{
    m_callRow = NewRow("call", "warning", WarningBack, WarningText);
    m_inUseRow = NewRow("inUse", "warning", WarningBack, WarningText);
    m_inUseRow->AddButton(QStringLiteral("cmdHangUpRadio"), m_strings.LoadString(MainText::HangUpRadio),
                          [this] { Q_EMIT HangUpRequested(); });
    m_failedRow = NewRow("failed", "warning", WarningBack, WarningText);
    m_failedRow->AddButton(QStringLiteral("cmdDismissFailed"), m_strings.LoadString(MainText::Dismiss),
                           [this] {
                               m_failures.removeLast();
                               ShowNewestFailure();
                           });
}

void LinkStrip::ShowLink(const LinkStatus& status)
{
    const bool lost = status.state == LinkStatus::State::Lost || status.state == LinkStatus::State::Silent;
    m_simulation->setVisible(status.simulation);
    m_stateText->setText(status.text);
    m_statePicture->setVisible(lost);
    m_stateRow->setVisible(status.simulation || !status.text.isEmpty());
    if (lost) {
        Colour(*m_stateRow, WarningBack, WarningText);
    } else {
        m_stateRow->setPalette(QPalette());
        m_stateRow->setAutoFillBackground(false);
    }
    Colour(*m_simulation, SimulationBack, White);
    Q_EMIT ContentChanged();
}

void LinkStrip::ShowFailure(const QString& text)
{
    m_failures.removeAll(text);
    m_failures.append(text);
    ShowNewestFailure();
}

void LinkStrip::ShowNewestFailure()
{
    const QString newest = m_failures.isEmpty() ? QString() : m_failures.last();
    const qsizetype more = m_failures.size() - 1;
    Say(*m_failedRow, more > 0
                          ? FormatMessage(m_strings, MainText::FailedAndMore, {newest, QString::number(more)})
                          : newest);
}

void LinkStrip::ShowSilent(const QString& text)
{
    Say(*m_soundRow, text);
}

void LinkStrip::ShowCallNotice(const QString& text)
{
    Say(*m_callRow, text);
}

void LinkStrip::ShowRadioInUse(const QString& text)
{
    Say(*m_inUseRow, text);
}

void LinkStrip::Say(StripRow& row, const QString& text)
{
    row.Say(text);
    Q_EMIT ContentChanged();
}

void LinkStrip::ShowDoubts(const QStringList& doubts)
{
    Say(*m_doubtRow,
        doubts.isEmpty() ? QString() : FormatMessage(m_strings, MainText::NumberingDoubt, {doubts.first()}));
}

void LinkStrip::ShowDatabase(bool away, int waiting, const QString& cause)
{
    QStringList texts;
    if (away)
        texts.append(m_strings.LoadString(MainText::DatabaseAway));
    else if (waiting > 0 && !cause.isEmpty())
        texts.append(FormatMessage(m_strings, MainText::RecordsDelayed, {cause}));
    if (waiting > 0)
        texts.append(FormatMessage(m_strings, MainText::RecordsWaiting, {QString::number(waiting)}));
    Say(*m_databaseRow, texts.join(u' '));
}

void LinkStrip::ShowRecordsLeft(int records)
{
    Say(*m_databaseRow, FormatMessage(m_strings, MainText::RecordsLeft, {QString::number(records)}));
}

int LinkStrip::HeightAt(int width) const
{
    int height = 0;
    for (int row = 0; row < layout()->count(); ++row) {
        const QWidget& widget = *layout()->itemAt(row)->widget();
        if (!widget.isHidden())
            height += widget.heightForWidth(width);
    }
    return height;
}

QWidget* LinkStrip::BuildStateRow()
{
    auto* row = new QWidget(this);
    row->setObjectName(QStringLiteral("linkRow"));
    QHBoxLayout* layout = NewStripLayout(row);

    m_simulation = new QLabel(m_strings.LoadString(MainText::Simulation), row);
    m_simulation->setObjectName(QStringLiteral("simulationText"));
    m_simulation->setMargin(StripRow::RowMargin);
    m_statePicture = NewStripPicture(QStringLiteral("warning"), row);
    m_stateText = NewStripText(QStringLiteral("linkText"), row);

    layout->addWidget(m_simulation, 0, Qt::AlignTop);
    layout->addWidget(m_statePicture, 0, Qt::AlignTop);
    layout->addWidget(m_stateText, 1);
    return row;
}
