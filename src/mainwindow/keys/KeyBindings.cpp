#include "mainwindow/keys/KeyBindings.h"

#include "core/settings/Settings.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "mainwindow/keys/KeyTextIds.h"

#include <QAction>
#include <QUrl>
#include <algorithm>

namespace {

const QString None = QStringLiteral("none");

std::size_t IndexOf(const KeyRow& row)
{
    return static_cast<std::size_t>(&row - KeyTable().data());
}

QKeySequence AtFirst(const KeyRow& row)
{
    return row.kind == KeyRow::Kind::Own ? row.keys : QKeySequence();
}

std::vector<QKeySequence> AllAtFirst()
{
    std::vector<QKeySequence> keys;
    for (const KeyRow& row : KeyTable())
        keys.push_back(AtFirst(row));
    return keys;
}

const KeyRow& RowOf(KeyCommand command, int place)
{
    return *std::ranges::find_if(
        KeyTable(), [&](const KeyRow& row) { return row.command == command && row.place == place; });
}

bool Holds(const QKeySequence& keys, QKeyCombination key)
{
    for (int i = 0; i < keys.count(); ++i)
        if (keys[static_cast<uint>(i)] == key)
            return true;
    return false;
}

// What a row keeps whatever the operator chooses.
bool Keeps(const KeyRow& row, QKeyCombination key)
{
    return row.kind != KeyRow::Kind::Own && Holds(row.keys, key);
}

bool IsOneKey(const QKeySequence& key)
{
    return key.count() == 1 && key[0].key() != Qt::Key_unknown;
}

} // namespace

KeyBindings::KeyBindings(Settings& settings, const IStringSource& strings)
    : m_settings(settings),
      m_strings(strings),
      m_chosen(AllAtFirst())
{
}

QStringList KeyBindings::Load(const QString& user)
{
    m_chosen = AllAtFirst();
    m_section.clear();
    Q_EMIT Changed();
    if (user.isEmpty())
        return {};

    // A user's name may hold what the name of a section may not.
    const QString section =
        QStringLiteral("keys ") + QString::fromLatin1(QUrl::toPercentEncoding(user.toCaseFolded()));
    QStringList kept;
    for (const KeyRow& row : KeyTable())
        kept.append(row.kind == KeyRow::Kind::Fixed ? QString()
                                                    : m_settings.Read(section, KeyNameOf(row), {}));
    m_section = section;
    // All of them first: two rows may have changed keys with each other.
    const auto textOf = [&kept](const KeyRow& row) { return kept[static_cast<qsizetype>(IndexOf(row))]; };
    for (const KeyRow& row : KeyTable())
        if (const QString text = textOf(row); !text.isEmpty())
            m_chosen[IndexOf(row)] = text == None ? QKeySequence() : QKeySequence::fromString(text);

    // A key that was changed gives way, not the one that it takes from another row.
    QStringList problems;
    for (const KeyRow& row : KeyTable()) {
        const QString text = textOf(row);
        QKeySequence& key = m_chosen[IndexOf(row)];
        if (text.isEmpty() || text == None || (IsOneKey(key) && Refusal(row, key).isEmpty()))
            continue;
        key = AtFirst(row);
        if (HolderOf(key, row) != nullptr)
            key = {};
        problems.append(FormatMessage(m_strings, KeyText::KeyNotUsed, {Describe(row), text}));
    }
    Q_EMIT Changed();
    return problems;
}

bool KeyBindings::MayChange(const KeyRow& row) const
{
    return !m_section.isEmpty() && row.kind != KeyRow::Kind::Fixed;
}

QKeySequence KeyBindings::Chosen(const KeyRow& row) const
{
    return m_chosen[IndexOf(row)];
}

QString KeyBindings::Choose(const KeyRow& row, const QKeySequence& key)
{
    if (!MayChange(row))
        return m_strings.LoadString(KeyText::KeyStays);
    if (!key.isEmpty())
        if (const QString refusal = Refusal(row, key); !refusal.isEmpty())
            return refusal;
    Store(row, key);
    return {};
}

QString KeyBindings::Restore(const KeyRow& row)
{
    return Choose(row, AtFirst(row));
}

void KeyBindings::Store(const KeyRow& row, const QKeySequence& key)
{
    QString text = key.isEmpty() ? None : key.toString(QKeySequence::PortableText);
    if (key == AtFirst(row))
        text.clear();
    m_settings.Write(m_section, KeyNameOf(row), text);
    m_chosen[IndexOf(row)] = key;
    Q_EMIT Changed();
}

QString KeyBindings::Refusal(const KeyRow& row, const QKeySequence& key) const
{
    const QString name = key.toString(QKeySequence::NativeText);
    if (const KeyRow* holder = HolderOf(key, row))
        return FormatMessage(m_strings, KeyText::KeyTaken, {name, Describe(*holder)});
    switch (FaultOf(key[0])) {
    case KeyFault::None:
        return {};
    case KeyFault::Typed:
        return FormatMessage(m_strings, KeyText::KeyIsTyped, {name});
    case KeyFault::Others:
        return FormatMessage(m_strings, KeyText::KeyIsOthers, {name});
    }
    return {};
}

const KeyRow* KeyBindings::HolderOf(const QKeySequence& key, const KeyRow& except) const
{
    if (key.isEmpty())
        return nullptr;
    for (const KeyRow& row : KeyTable())
        if (Keeps(row, key[0]) || (&row != &except && Holds(Chosen(row), key[0])))
            return &row;
    return nullptr;
}

KeyBindings::Meaning KeyBindings::MeaningOf(QKeyCombination pressed) const
{
    const QKeyCombination key = NormalKey(pressed);
    for (const KeyRow& row : KeyTable()) {
        if (Holds(Chosen(row), key))
            return {&row, row.kind == KeyRow::Kind::Second};
        if (Keeps(row, key))
            return {&row, false};
    }
    return {};
}

void KeyBindings::Follow(QAction& action, KeyCommand command, int place)
{
    const KeyRow& row = RowOf(command, place);
    const auto follow = [this, &action, &row] { action.setShortcut(Chosen(row)); };
    follow();
    connect(this, &KeyBindings::Changed, &action, follow);
}

QString KeyBindings::TextOf(KeyCommand command, int place) const
{
    return Chosen(RowOf(command, place)).toString(QKeySequence::NativeText);
}

QString KeyBindings::Describe(const KeyRow& row) const
{
    return FormatMessage(m_strings, row.what, {QString::number(row.place + 1)});
}
