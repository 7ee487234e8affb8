#include "mainwindow/keys/KeyTable.h"

#include "mainwindow/keys/KeyTextIds.h"

#include <algorithm>

namespace {

using Kind = KeyRow::Kind;
using namespace KeyText;

QKeySequence With(Qt::KeyboardModifiers modifiers, int key)
{
    return QKeySequence(QKeyCombination(modifiers, static_cast<Qt::Key>(key)));
}

std::vector<KeyRow> MakeRows()
{
    using enum KeyCommand;
    constexpr auto Plain = Qt::NoModifier;
    constexpr auto Ctrl = Qt::ControlModifier;
    constexpr auto Alt = Qt::AltModifier;

    std::vector<KeyRow> rows = {
        {Kind::Second, Help, 0, "help", With(Plain, Qt::Key_F1), HelpPage, Everywhere},
        {Kind::Second, KeyCommand::NextTab, 0, "nexttab", With(Ctrl, Qt::Key_Tab), KeyText::NextTab,
         MainWindow},
        {Kind::Second, KeyCommand::PreviousTab, 0, "previoustab", With(Ctrl | Qt::ShiftModifier, Qt::Key_Tab),
         KeyText::PreviousTab, MainWindow},
        {Kind::Second, KeyCommand::SevenBit, 0, "sevenbit", With(Alt, Qt::Key_7), KeyText::SevenBit,
         MainWindow},
        {Kind::Second, KeyCommand::EightBit, 0, "eightbit", With(Alt, Qt::Key_8), KeyText::EightBit,
         MainWindow},
        {Kind::Second, KeyCommand::Reload, 0, "reload", With(Plain, Qt::Key_F5), KeyText::Reload, Lists},
        {Kind::Second, Enter, 0, "enter", With(Plain, Qt::Key_Return), SendOrCall, MainWindow},
        {Kind::Own, KeyCommand::Attention, 0, "attention", With(Plain, Qt::Key_F11), KeyText::Attention,
         MainWindow},
        {Kind::Own, KeyCommand::LogWindow, 0, "logwindow", With(Ctrl, Qt::Key_L), KeyText::LogWindow,
         MainWindow},
        {Kind::Own, KeyCommand::SentMessages, 0, "sentmessages", With(Ctrl, Qt::Key_S), KeyText::SentMessages,
         MainWindow},
    };
    for (int place = 0; place < FavouriteKeys; ++place)
        rows.push_back({Kind::Own, KeyCommand::Favourite, place, "favourite", With(Ctrl, Qt::Key_F1 + place),
                        KeyText::Favourite, MainWindow});
    for (int place = 0; place < QuickTextKeys; ++place)
        rows.push_back({Kind::Own, KeyCommand::QuickText, place, "text", With(Ctrl, Qt::Key_1 + place),
                        KeyText::QuickText, MainWindow});
    const auto fixed = [&rows](const char* keys, int what, int where) {
        rows.push_back(
            {Kind::Fixed, None, 0, "", QKeySequence::fromString(QLatin1String(keys)), what, where});
    };
    fixed("F12", ToCall, Everywhere);
    fixed("F6", Answer, CallWindow);
    fixed("F7", HangUp, CallWindow);
    fixed("F8", CancelCall, CallWindow);
    fixed("F9", CloseCall, CallWindow);
    fixed("Space", Transmit, CallWindow);
    fixed("Alt+Up, Alt+Down", SentBefore, ToBox);
    fixed("Up, Down", SentBefore, TextBox);
    fixed("Ctrl+C", CopyLines, MessageLog);
    fixed("Ctrl+I, Ctrl+G", AddAddress, AddressDirectory);
    fixed("Ins", NewStatus, StatusMessages);
    fixed("Del", DeleteLine, AddressDirectory);
    return rows;
}

bool IsFunctionKey(Qt::Key key)
{
    return key >= Qt::Key_F1 && key <= Qt::Key_F35;
}

// What a box that is typed in does with its keys.
bool EditsText(QKeyCombination key)
{
    using Standard = QKeySequence::StandardKey;
    constexpr Standard Keys[] = {
        Standard::Undo,
        Standard::Redo,
        Standard::Cut,
        Standard::Copy,
        Standard::Paste,
        Standard::SelectAll,
        Standard::Deselect,
        Standard::Delete,
        Standard::Backspace,
        Standard::DeleteStartOfWord,
        Standard::DeleteEndOfWord,
        Standard::DeleteEndOfLine,
        Standard::DeleteCompleteLine,
        Standard::MoveToNextChar,
        Standard::MoveToPreviousChar,
        Standard::MoveToNextWord,
        Standard::MoveToPreviousWord,
        Standard::MoveToStartOfLine,
        Standard::MoveToEndOfLine,
        Standard::MoveToStartOfBlock,
        Standard::MoveToEndOfBlock,
        Standard::SelectStartOfLine,
        Standard::SelectEndOfLine,
    };
    return std::ranges::any_of(
        Keys, [key](Standard standard) { return QKeySequence::keyBindings(standard).contains(key); });
}

} // namespace

const std::vector<KeyRow>& KeyTable()
{
    static const std::vector<KeyRow> rows = MakeRows();
    return rows;
}

QString KeyNameOf(const KeyRow& row)
{
    const QString name = QLatin1String(row.name);
    const bool several = row.command == KeyCommand::Favourite || row.command == KeyCommand::QuickText;
    return several ? name + QString::number(row.place + 1) : name;
}

KeyFault FaultOf(QKeyCombination combination)
{
    const Qt::KeyboardModifiers modifiers = combination.keyboardModifiers();
    const Qt::Key key = combination.key();
    if (modifiers & (Qt::AltModifier | Qt::MetaModifier | Qt::GroupSwitchModifier))
        return KeyFault::Others;
    if (IsFunctionKey(key)) {
        const bool editsOrOpens =
            (key == Qt::Key_F2 || key == Qt::Key_F4) && !(modifiers & Qt::ControlModifier);
        return editsOrOpens || key == Qt::Key_F10 || EditsText(combination) ? KeyFault::Others
                                                                            : KeyFault::None;
    }
    if (!(modifiers & Qt::ControlModifier) || (modifiers & Qt::KeypadModifier))
        return KeyFault::Typed;
    const bool hasCharacter = key > Qt::Key_Space && key < Qt::Key_Escape;
    return !hasCharacter || EditsText(combination) ? KeyFault::Others : KeyFault::None;
}

QKeyCombination NormalKey(QKeyCombination key)
{
    if (key.key() != Qt::Key_Backtab)
        return key;
    return QKeyCombination(key.keyboardModifiers() | Qt::ShiftModifier, Qt::Key_Tab);
}
