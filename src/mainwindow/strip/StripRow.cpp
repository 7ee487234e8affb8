#include "mainwindow/strip/StripRow.h"

#include "core/widgets/Icons.h"
#include "mainwindow/lists/NoticeColours.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

StripRow::StripRow(const QString& topic, const QString& picture, QRgb back, QRgb text, QWidget* parent)
    : QWidget(parent),
      m_row(NewStripLayout(this)),
      m_text(NewStripText(topic + QStringLiteral("Text"), this))
{
    setObjectName(topic + QStringLiteral("Row"));
    NoticeColours::Colour(*this, back, text);
    m_row->addWidget(NewStripPicture(picture, this), 0, Qt::AlignTop);
    m_row->addWidget(m_text, 1);
    hide();
}

QPushButton& StripRow::AddButton(const QString& name, const QString& caption)
{
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    m_row->addWidget(button, 0, Qt::AlignTop);
    return *button;
}

void StripRow::SetBold()
{
    QFont bold = m_text->font();
    bold.setBold(true);
    m_text->setFont(bold);
}

void StripRow::Say(const QString& text)
{
    m_text->setText(text);
    setVisible(!text.isEmpty());
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
