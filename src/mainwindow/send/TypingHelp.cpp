#include "mainwindow/send/TypingHelp.h"

#include "core/session/DbSession.h"
#include "core/session/SessionMemory.h"
#include "core/texts/FormatMessage.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/send/PartyPopup.h"
#include "mainwindow/send/Recall.h"
#include "mainwindow/send/SendRules.h"
#include "radio/base/SentMessages.h"
#include "radio/facade/Map27Executive.h"

#include <QComboBox>
#include <QLabel>
#include <algorithm>

TypingHelp::TypingHelp(const Parts& parts, QComboBox& address, QComboBox& text, QWidget& pane)
    : QObject(&pane),
      m_parts(parts),
      m_text(text),
      m_parties(new PartyPopup(
          parts.strings,
          [&database = parts.database]() -> const Directory& { return database.Memory().Addresses(); },
          address)),
      m_sentAddresses(new RecallKeys(address, Qt::AltModifier)),
      m_sentTexts(new RecallKeys(text, Qt::NoModifier)),
      lblRoom(new QLabel(&pane))
{
    lblRoom->setObjectName(QStringLiteral("lblRoom"));
    lblRoom->setTextFormat(Qt::PlainText);
    connect(&text, &QComboBox::editTextChanged, this, [this] { Count(); });
    // What was sent is the operator's who sent it.
    connect(&parts.executive.Sent(), &SentMessages::Cleared, this, [this] {
        m_sentAddresses->Clear();
        m_sentTexts->Clear();
    });
}

bool TypingHelp::AcceptParty()
{
    return m_parties->Accept();
}

void TypingHelp::Remember(const QString& address, const QString& text)
{
    m_sentAddresses->Add(address);
    if (!text.isEmpty())
        m_sentTexts->Add(text);
}

void TypingHelp::Count(bool eightBit)
{
    m_eightBit = eightBit;
    Count();
}

void TypingHelp::Count()
{
    const QString sent = WithoutOuterBlanks(m_text.currentText());
    const TextRoom room = m_parts.executive.RoomIn(sent, m_eightBit);
    const int left = std::min(room.left, static_cast<int>(LongestMessage - sent.size()));
    QString note =
        FormatMessage(m_parts.strings, left < 0 ? MainText::CharactersTooMany : MainText::CharactersLeft,
                      {QString::number(std::abs(left))});
    if (!room.unsendable.isEmpty())
        note = FormatMessage(m_parts.strings, MainText::CharacterUnsendable, {room.unsendable});
    QFont font = lblRoom->parentWidget()->font();
    font.setBold(left < 0 || !room.unsendable.isEmpty());
    lblRoom->setFont(font);
    lblRoom->setText(note);
}
