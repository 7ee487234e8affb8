#include "mainwindow/strip/StripRow.h"

#include "core/base/Clock.h"
#include "core/widgets/Icons.h"
#include "mainwindow/lists/NoticeColours.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr std::chrono::seconds TimeToNotice(1);

} // namespace

StripRow::StripRow(const QString& topic, const QString& picture, QRgb back, QRgb text, const Clock& clock,
                   QWidget* parent)
    : QWidget(parent),
      m_clock(clock),
      m_lines(new QVBoxLayout(this)),
      m_row(new QHBoxLayout),
      m_buttons(m_row),
      m_text(NewStripText(topic + QStringLiteral("Text"), this))
{
    setObjectName(topic + QStringLiteral("Row"));
    NoticeColours::Colour(*this, back, text);
    m_lines->setContentsMargins(SideMargin, RowMargin, SideMargin, RowMargin);
    m_lines->setSpacing(RowMargin);
    m_row->setSpacing(SideMargin);
    m_lines->addLayout(m_row);
    m_row->addWidget(NewStripPicture(picture, this), 0, Qt::AlignTop);
    m_row->addWidget(m_text, 1);
    hide();
}

void StripRow::PutButtonsBelow()
{
    m_buttons = new QHBoxLayout;
    m_buttons->setSpacing(SideMargin);
    m_buttons->addStretch(1);
    m_lines->addLayout(m_buttons);
}

QPushButton& StripRow::AddButton(const QString& name, const QString& caption,
                                 const std::function<void()>& press)
{
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    // No other button comes under a pointer that is about to press again.
    QSizePolicy place = button->sizePolicy();
    place.setRetainSizeWhenHidden(true);
    button->setSizePolicy(place);
    m_buttons->addWidget(button, 0, Qt::AlignTop);
    connect(button, &QPushButton::clicked, this, [this, press] {
        if (m_clock.Ticks() - m_changed >= TimeToNotice)
            press();
    });
    return *button;
}

void StripRow::SetBold(bool on)
{
    QFont bold = m_text->font();
    bold.setBold(on);
    m_text->setFont(bold);
}

void StripRow::SayOf(const QString& subject, const QString& text)
{
    if (subject != m_subject)
        m_changed = m_clock.Ticks();
    m_subject = subject;
    m_text->setText(text);
    setVisible(!text.isEmpty());
}

void StripRow::SayAsked(const QString& subject, const QString& text)
{
    const std::chrono::milliseconds changed = m_changed;
    SayOf(subject, text);
    m_changed = changed;
}

void StripRow::moveEvent(QMoveEvent* event)
{
    m_changed = m_clock.Ticks();
    QWidget::moveEvent(event);
}

QLabel* NewStripText(const QString& name, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* NewStripPicture(const QString& key, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setPixmap(LoadIcon(key).pixmap(IconSize(*parent)));
    return label;
}

QHBoxLayout* NewStripLayout(QWidget* row)
{
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(StripRow::SideMargin, StripRow::RowMargin, StripRow::SideMargin,
                               StripRow::RowMargin);
    layout->setSpacing(StripRow::SideMargin);
    return layout;
}
