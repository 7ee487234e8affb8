#include "mainwindow/LinkStrip.h"

#include "core/FormatMessage.h"
#include "core/Icons.h"
#include "core/StringSource.h"
#include "mainwindow/LongTime.h"
#include "mainwindow/TextIds.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// The strip's colours are its own on a light and on a dark desktop, since they mean something.
constexpr QRgb EmergencyBack = 0xffb3261e;
constexpr QRgb LostBack = 0xffffe3a8;
constexpr QRgb LostText = 0xff241a00;
constexpr QRgb SimulationBack = 0xff6b4fa8;
constexpr QRgb White = 0xffffffff;

constexpr int SideMargin = 8;
constexpr int RowMargin = 3;

void Colour(QWidget& widget, QColor back, QColor text)
{
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, back);
    palette.setColor(QPalette::WindowText, text);
    widget.setPalette(palette);
    widget.setAutoFillBackground(true);
}

QLabel* NewText(const QString& name, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* NewPicture(const QString& key, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setPixmap(LoadIcon(key).pixmap(IconSize(*parent)));
    return label;
}

QHBoxLayout* NewRow(QWidget* row)
{
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(SideMargin, RowMargin, SideMargin, RowMargin);
    layout->setSpacing(SideMargin);
    return layout;
}

} // namespace

LinkStrip::LinkStrip(const IStringSource& strings, QWidget* parent) : QWidget(parent), m_strings(strings)
{
    setObjectName(QStringLiteral("linkStrip"));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(m_emergencyRow = BuildEmergencyRow());
    rows->addWidget(m_stateRow = BuildStateRow());
    rows->addWidget(m_databaseRow = BuildDatabaseRow());
    rows->addWidget(m_doubtRow = BuildDoubtRow());
    m_emergencyRow->hide();
    m_stateRow->hide();
    m_databaseRow->hide();
    m_doubtRow->hide();
}

void LinkStrip::ShowLink(const LinkStatus& status)
{
    const bool lost = status.state == LinkStatus::State::Lost || status.state == LinkStatus::State::Silent;
    m_simulation->setVisible(status.simulation);
    m_stateText->setText(status.text);
    m_statePicture->setVisible(lost);
    m_stateRow->setVisible(status.simulation || !status.text.isEmpty());
    if (lost) {
        Colour(*m_stateRow, QColor(LostBack), QColor(LostText));
    } else {
        m_stateRow->setPalette(QPalette());
        m_stateRow->setAutoFillBackground(false);
    }
    Colour(*m_simulation, QColor(SimulationBack), QColor(White));
    Q_EMIT ContentChanged();
}

void LinkStrip::ShowEmergency(const QString& party, const QDateTime& time)
{
    std::erase_if(m_emergencies, [&](const Emergency& earlier) { return earlier.party == party; });
    m_emergencies.push_back({party, time});
    ShowNewestEmergency();
    QAccessibleEvent alert(m_emergencyRow, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void LinkStrip::ShowDoubts(const QStringList& doubts)
{
    m_doubtRow->setVisible(!doubts.isEmpty());
    if (!doubts.isEmpty()) {
        m_doubtText->setText(FormatMessage(m_strings, MainText::NumberingDoubt, {doubts.first()}));
    }
    Q_EMIT ContentChanged();
}

void LinkStrip::ShowDatabase(bool away, int waiting)
{
    QStringList texts;
    if (away) {
        texts.append(m_strings.LoadString(MainText::DatabaseAway));
    }
    if (waiting > 0) {
        texts.append(FormatMessage(m_strings, MainText::RecordsWaiting, {QString::number(waiting)}));
    }
    m_databaseRow->setVisible(!texts.isEmpty());
    m_databaseText->setText(texts.join(u' '));
    Q_EMIT ContentChanged();
}

int LinkStrip::HeightAt(int width) const
{
    int height = 0;
    for (const QWidget* row : {m_emergencyRow, m_stateRow, m_databaseRow, m_doubtRow}) {
        if (!row->isHidden()) {
            height += row->heightForWidth(width);
        }
    }
    return height;
}

QWidget* LinkStrip::BuildEmergencyRow()
{
    auto* row = new QWidget(this);
    row->setObjectName(QStringLiteral("emergencyRow"));
    Colour(*row, QColor(EmergencyBack), QColor(White));
    QHBoxLayout* layout = NewRow(row);

    m_emergencyText = NewText(QStringLiteral("emergencyText"), row);
    QFont bold = m_emergencyText->font();
    bold.setBold(true);
    m_emergencyText->setFont(bold);
    m_dismiss = new QPushButton(m_strings.LoadString(MainText::Dismiss), row);
    m_dismiss->setObjectName(QStringLiteral("cmdDismissEmergency"));
    connect(m_dismiss, &QPushButton::clicked, this, &LinkStrip::Dismiss);

    layout->addWidget(NewPicture(QStringLiteral("warning"), row), 0, Qt::AlignTop);
    layout->addWidget(m_emergencyText, 1);
    layout->addWidget(m_dismiss, 0, Qt::AlignTop);
    return row;
}

QWidget* LinkStrip::BuildStateRow()
{
    auto* row = new QWidget(this);
    row->setObjectName(QStringLiteral("linkRow"));
    QHBoxLayout* layout = NewRow(row);

    m_simulation = new QLabel(m_strings.LoadString(MainText::Simulation), row);
    m_simulation->setObjectName(QStringLiteral("simulationText"));
    m_simulation->setMargin(RowMargin);
    m_statePicture = NewPicture(QStringLiteral("warning"), row);
    m_stateText = NewText(QStringLiteral("linkText"), row);

    layout->addWidget(m_simulation, 0, Qt::AlignTop);
    layout->addWidget(m_statePicture, 0, Qt::AlignTop);
    layout->addWidget(m_stateText, 1);
    return row;
}

QWidget* LinkStrip::BuildDoubtRow()
{
    auto* row = new QWidget(this);
    row->setObjectName(QStringLiteral("numberingRow"));
    Colour(*row, QColor(LostBack), QColor(LostText));
    QHBoxLayout* layout = NewRow(row);

    m_doubtText = NewText(QStringLiteral("numberingText"), row);
    auto* dismiss = new QPushButton(m_strings.LoadString(MainText::Dismiss), row);
    dismiss->setObjectName(QStringLiteral("cmdDismissNumbering"));
    connect(dismiss, &QPushButton::clicked, this, [this] { ShowDoubts({}); });

    layout->addWidget(NewPicture(QStringLiteral("warning"), row), 0, Qt::AlignTop);
    layout->addWidget(m_doubtText, 1);
    layout->addWidget(dismiss, 0, Qt::AlignTop);
    return row;
}

QWidget* LinkStrip::BuildDatabaseRow()
{
    auto* row = new QWidget(this);
    row->setObjectName(QStringLiteral("databaseRow"));
    Colour(*row, QColor(LostBack), QColor(LostText));
    QHBoxLayout* layout = NewRow(row);
    m_databaseText = NewText(QStringLiteral("databaseText"), row);
    layout->addWidget(NewPicture(QStringLiteral("warning"), row), 0, Qt::AlignTop);
    layout->addWidget(m_databaseText, 1);
    return row;
}

void LinkStrip::Dismiss()
{
    m_emergencies.pop_back();
    ShowNewestEmergency();
}

void LinkStrip::ShowNewestEmergency()
{
    m_emergencyRow->setVisible(!m_emergencies.empty());
    if (!m_emergencies.empty()) {
        const Emergency& newest = m_emergencies.back();
        const qsizetype more = static_cast<qsizetype>(m_emergencies.size()) - 1;
        const QString time = LongTime(newest.time.time());
        m_emergencyText->setText(more == 0
                                     ? FormatMessage(m_strings, MainText::EmergencyFrom, {newest.party, time})
                                     : FormatMessage(m_strings, MainText::EmergencyFromAndMore,
                                                     {newest.party, time, QString::number(more)}));
    }
    Q_EMIT ContentChanged();
}
