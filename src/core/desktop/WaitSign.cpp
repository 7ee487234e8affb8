#include "core/desktop/WaitSign.h"

#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int Width = 44; // characters

QLabel* MakeLine(const char* name)
{
    auto* line = new QLabel;
    line->setObjectName(QLatin1String(name));
    line->setTextFormat(Qt::PlainText);
    line->setWordWrap(true);
    return line;
}

} // namespace

WaitSign::WaitSign(const IStringSource& strings, QWidget* owner)
    : QWidget(owner,
              Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowDoesNotAcceptFocus),
      m_strings(strings),
      m_text(MakeLine("lblWaiting")),
      m_hint(MakeLine("lblHint")),
      m_giveUp(new QPushButton(strings.LoadString(CoreText::GiveUpWaiting)))
{
    setObjectName(QStringLiteral("waitSign"));
    setWindowTitle(strings.LoadString(CoreText::WaitCaption));
    setAttribute(Qt::WA_ShowWithoutActivating);
    QFont font = m_text->font();
    font.setBold(true);
    m_text->setFont(font);
    m_giveUp->setObjectName(QStringLiteral("cmdGiveUp"));
    m_giveUp->setFocusPolicy(Qt::NoFocus);
    auto* lines = new QVBoxLayout(this);
    lines->addWidget(m_text);
    lines->addWidget(m_hint);
    lines->addWidget(m_giveUp, 0, Qt::AlignRight);
    setFixedWidth(Width * fontMetrics().averageCharWidth() + 40);
    connect(m_giveUp, &QPushButton::clicked, this, &WaitSign::GivenUp);
}

void WaitSign::ShowText(const QString& text)
{
    if (m_text->text() == text)
        return;
    m_text->setText(text);
    setAccessibleName(text);
}

void WaitSign::ShowGivingUp(bool safe, bool offered)
{
    m_hint->setText(m_strings.LoadString(safe ? CoreText::WaitMayBeGivenUp : CoreText::WaitMayNotBeGivenUp));
    m_giveUp->setVisible(safe);
    m_giveUp->setEnabled(offered);
}

void WaitSign::ShowOver()
{
    setFixedHeight(layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width())
                                                 : sizeHint().height());
    if (const QWidget* owner = parentWidget())
        move(owner->frameGeometry().center() - rect().center());
    show();
    raise();
}

void WaitSign::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
