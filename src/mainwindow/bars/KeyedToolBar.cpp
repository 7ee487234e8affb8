#include "mainwindow/bars/KeyedToolBar.h"

#include "core/widgets/Icons.h"

#include <QBoxLayout>
#include <QEvent>
#include <QToolButton>

namespace {

constexpr auto KeyProperty = "key";

QString KeyOf(const QToolButton& button)
{
    return button.property(KeyProperty).toString();
}

} // namespace

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

QToolButton* KeyedToolBar::AddButton(const QString& key, Style style, int toolTip, const QString& picture)
{
    auto* button = new QToolButton(this);
    button->setObjectName(objectName() + QLatin1Char('_') + key);
    button->setProperty(KeyProperty, key);
    button->setIcon(LoadIcon(picture.isEmpty() ? key : picture));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setCheckable(style != Style::Plain);
    if (toolTip != 0) {
        button->setProperty("toolTipId", toolTip);
        button->setProperty("accessibleNameId", toolTip);
    }
    m_buttons.append(button);
    m_styles.insert(button, style);
    m_row->addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, button, style] {
        if (style == Style::OneOfAll)
            SetPressed(KeyOf(*button), true);
        Q_EMIT ButtonClicked(KeyOf(*button));
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

QToolButton* KeyedToolBar::Button(const QString& key) const
{
    for (QToolButton* button : m_buttons)
        if (KeyOf(*button) == key)
            return button;
    return nullptr;
}

bool KeyedToolBar::IsPressed(const QString& key) const
{
    const QToolButton* button = Button(key);
    return button != nullptr && button->isChecked();
}

void KeyedToolBar::SetPressed(const QString& key, bool pressed)
{
    QToolButton* chosen = Button(key);
    if (chosen == nullptr)
        return;
    if (pressed && m_styles.value(chosen) == Style::OneOfAll)
        for (QToolButton* button : m_buttons)
            button->setChecked(button == chosen);
    else
        chosen->setChecked(pressed);
}

QString KeyedToolBar::PressedKey() const
{
    for (const QToolButton* button : m_buttons)
        if (button->isChecked())
            return KeyOf(*button);
    return {};
}

QToolButton* KeyedToolBar::FirstEnabled() const
{
    for (QToolButton* button : m_buttons)
        if (button->isEnabled())
            return button;
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
    for (QToolButton* button : m_buttons)
        button->setIconSize(size);
}
