#include "setup/pages/SetUpPage.h"

#include "core/texts/StringSource.h"

#include <QAccessible>
#include <QLabel>
#include <QVBoxLayout>

SetUpPage::SetUpPage(const SetUpServices& services, const char* name, int title, int about)
    : m_services(services),
      m_rows(new QVBoxLayout),
      m_message(new QLabel(this))
{
    setObjectName(QLatin1String(name));
    setTitle(Text(title));
    m_message->setObjectName(QStringLiteral("lblMessage"));
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    AddText("lblAbout")->setText(Text(about));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(m_rows);
    layout->addWidget(m_message);
    layout->addStretch();
}

void SetUpPage::Enter(const SetUpChoice&)
{
    Say({});
}

void SetUpPage::Say(const QString& text)
{
    m_message->setText(text);
    m_message->setAccessibleName(text);
    QAccessibleEvent event(m_message, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

QString SetUpPage::Text(int id) const
{
    return m_services.strings.LoadString(id);
}

void SetUpPage::AddRow(int label, QWidget* control, const char* name)
{
    control->setObjectName(QLatin1String(name));
    auto* caption = new QLabel(Text(label), this);
    caption->setBuddy(control);
    m_rows->addWidget(caption);
    m_rows->addWidget(control);
}

void SetUpPage::AddWidget(QWidget* widget)
{
    m_rows->addWidget(widget);
}

QLabel* SetUpPage::AddText(const char* name)
{
    auto* text = new QLabel(this);
    text->setObjectName(QLatin1String(name));
    text->setWordWrap(true);
    text->setTextFormat(Qt::PlainText);
    m_rows->addWidget(text);
    return text;
}
