#include "radio/agent/RadioBoxes.h"

#include "core/desktop/Prompt.h"

#include <QTimer>

RadioBoxes::RadioBoxes(IPrompt& prompt) : m_prompt(prompt) {}

void RadioBoxes::ShowWarning(const QString& text)
{
    m_waiting.enqueue(text);
    QTimer::singleShot(0, this, &RadioBoxes::ShowNext);
}

void RadioBoxes::ShowNext()
{
    if (m_open)
        return;
    m_open = true;
    while (!m_waiting.isEmpty())
        m_prompt.ShowWarning(m_waiting.dequeue());
    m_open = false;
}
