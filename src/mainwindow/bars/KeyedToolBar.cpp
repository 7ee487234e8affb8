#include "mainwindow/bars/KeyedToolBar.h"

#include "core/widgets/Icons.h"

#include <QBoxLayout>
#include <QEvent>
#include <QToolButton>

KeyedToolBar::KeyedToolBar(const QString& name, QWidget* parent, Qt::Orientation orientation)
    : QWidget(parent),
      m_row(new QBoxLayout(orientation == Qt::Horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom,
                           this))
{
    setObjectName(name);
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(1);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QToolButton* KeyedToolBar::Add(int key, const QString& name, Style style, int toolTip, const QString& picture)
{
    auto* button = new QToolButton(this);
    button->setObjectName(objectName() + QLatin1Char('_') + name);
    button->setIcon(LoadIcon(picture.isEmpty() ? name : picture));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setCheckable(style != Style::Plain);
    if (toolTip != 0) {
        button->setProperty("toolTipId", toolTip);
        button->setProperty("accessibleNameId", toolTip);
    }
    m_buttons.push_back({key, button, style});
    m_row->addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, key, style] {
        if (style == Style::OneOfAll)
            Press(key, true);
        Q_EMIT ButtonClicked(key);
    });
    SizeIcons();
    return button;
}

void KeyedToolBar::AddGap()
{
    m_row->addSpacing(2 * fontMetrics().averageCharWidth());
}

void KeyedToolBar::AddStretch()
{
    m_row->addStretch(1);
}

void KeyedToolBar::SetCompact()
{
    m_compact = true;
    m_row->setSpacing(0);
    SizeIcons();
}

const KeyedToolBar::KeyedButton* KeyedToolBar::Find(int key) const
{
    for (const KeyedButton& entry : m_buttons)
        if (entry.key == key)
            return &entry;
    return nullptr;
}

QToolButton* KeyedToolBar::ButtonOf(int key) const
{
    const KeyedButton* entry = Find(key);
    return entry != nullptr ? entry->button : nullptr;
}

bool KeyedToolBar::IsButtonPressed(int key) const
{
    const KeyedButton* entry = Find(key);
    return entry != nullptr && entry->button->isChecked();
}

void KeyedToolBar::Press(int key, bool pressed)
{
    const KeyedButton* chosen = Find(key);
    if (chosen == nullptr)
        return;
    if (pressed && chosen->style == Style::OneOfAll)
        for (const KeyedButton& entry : m_buttons)
            entry.button->setChecked(&entry == chosen);
    else
        chosen->button->setChecked(pressed);
}

std::optional<int> KeyedToolBar::FirstPressed() const
{
    for (const KeyedButton& entry : m_buttons)
        if (entry.button->isChecked())
            return entry.key;
    return std::nullopt;
}

QToolButton* KeyedToolBar::FirstEnabled() const
{
    for (const KeyedButton& entry : m_buttons)
        if (entry.button->isEnabled())
            return entry.button;
    return nullptr;
}

void KeyedToolBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange)
        SizeIcons();
    QWidget::changeEvent(event);
}

void KeyedToolBar::SizeIcons()
{
    const QSize size = m_compact ? SmallIconSize(*this) : IconSize(*this);
    for (const KeyedButton& entry : m_buttons)
        entry.button->setIconSize(size);
}
