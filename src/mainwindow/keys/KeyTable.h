#pragma once

#include <QKeySequence>
#include <vector>

// What a key of the main window asks for. None: it belongs to one place, which knows it itself.
enum class KeyCommand {
    None,
    Help,
    NextTab,
    PreviousTab,
    SevenBit,
    EightBit,
    Reload,
    Enter,
    Attention,
    LogWindow,
    SentMessages,
    Favourite,
    QuickText,
};

// One line of the sheet of keys.
struct KeyRow {
    enum class Kind {
        Own,    // the operator may choose another key, or none
        Second, // stays, and the operator may have a second one beside it in the main window
        Fixed,  // stays, and stands alone
    };

    Kind kind;
    KeyCommand command;
    int place;         // of several of one command, 0 for the first
    const char* name;  // in the settings
    QKeySequence keys; // as the console comes: one, or of a Fixed row several
    int what;          // catalogue ids
    int where;
};

constexpr int FavouriteKeys = 8;
constexpr int QuickTextKeys = 9;

// All keys, in the order of the sheet. No key stands in it twice, but where two windows that never have the
// keyboard at the same time give it a meaning each.
const std::vector<KeyRow>& KeyTable();

// The name of a row in the settings.
QString KeyNameOf(const KeyRow& row);

// Why a key can be nobody's.
enum class KeyFault {
    None,
    Typed,  // into a box, or keys the transmitter
    Others, // belongs to menus, boxes, lists or the desktop
};
KeyFault FaultOf(QKeyCombination key);

// As the table writes it, whatever the desktop makes of Shift+Tab.
QKeyCombination NormalKey(QKeyCombination key);
