#include "mainwindow/lists/ListNotice.h"

#include "mainwindow/lists/NoticeColours.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int Margin = 4;

} // namespace

ListNotice::ListNotice(const QString& name, QWidget* parent) : QWidget(parent), m_text(new QLabel(this))
{
    setObjectName(name);
    NoticeColours::Colour(*this, NoticeColours::WarningBack, NoticeColours::WarningText);
    m_text->setObjectName(name + QStringLiteral("Text"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Margin, Margin, Margin, Margin);
    column->setSpacing(Margin);
    column->addWidget(m_text);
    hide();
}

QPushButton& ListNotice::AddButton(const QString& name, const QString& caption)
{
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    layout()->addWidget(button);
    return *button;
}

void ListNotice::Say(const QString& text)
{
    m_text->setText(text);
    setVisible(!text.isEmpty());
}
