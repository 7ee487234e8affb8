#include "mainwindow/send/Recall.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

void Recall::Add(const QString& text)
{
    m_at = -1;
    m_items.removeAll(text);
    m_items.prepend(text);
    if (m_items.size() > Most)
        m_items.removeLast();
}

void Recall::Clear()
{
    *this = {};
}

std::optional<QString> Recall::Older(const QString& shown)
{
    if (m_at >= 0 && m_items[m_at] != shown)
        m_at = -1; // it was changed: that is what comes back
    if (m_at < 0)
        m_draft = shown;
    // What stands there is not shown a second time.
    qsizetype next = m_at + 1;
    if (next == 0 && next < m_items.size() && m_items[next] == shown)
        ++next;
    if (next >= m_items.size())
        return {};
    m_at = next;
    return m_items[m_at];
}

std::optional<QString> Recall::Newer()
{
    if (m_at < 0)
        return {};
    --m_at;
    return m_at < 0 ? m_draft : m_items[m_at];
}

RecallKeys::RecallKeys(QComboBox& box, Qt::KeyboardModifiers modifiers)
    : QObject(&box),
      m_box(box),
      m_modifiers(modifiers)
{
    box.installEventFilter(this);
    box.lineEdit()->installEventFilter(this);
}

bool RecallKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto& key = *static_cast<QKeyEvent*>(event);
    const bool up = key.key() == Qt::Key_Up;
    if ((!up && key.key() != Qt::Key_Down) || (key.modifiers() & ~Qt::KeypadModifier) != m_modifiers)
        return QObject::eventFilter(watched, event);
    if (const auto text = up ? m_recall.Older(m_box.currentText()) : m_recall.Newer())
        m_box.setEditText(*text);
    return true;
}
