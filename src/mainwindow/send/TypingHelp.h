#pragma once

#include <QObject>
#include <QStringList>

class Map27Executive;
class PartyPopup;
class QComboBox;
class QLabel;
class QWidget;
class RecallKeys;
struct IDbSession;
struct IStringSource;

// What helps while somebody types an address or a text: parties that match, what was sent before (Alt+Up in
// the address, Up in the text), and how much the text may still grow.
class TypingHelp : public QObject {
    Q_OBJECT

public:
    struct Parts {
        const IStringSource& strings;
        Map27Executive& executive;
        IDbSession& database;
    };

    // The boxes are those of the pane, which gets the label Room as well and places it.
    TypingHelp(const Parts& parts, QComboBox& address, QComboBox& text, QWidget& pane);

    // As in PartyPopup.
    bool AcceptParty();
    // An empty text: it was none.
    void Remember(const QString& address, const QString& text);
    // By the coding that is chosen now.
    void Count(bool eightBit);
    QLabel& Room() { return *lblRoom; }

private:
    void Count();

    Parts m_parts;
    QComboBox& m_text;
    bool m_eightBit = false;
    PartyPopup* m_parties;
    RecallKeys* m_sentAddresses;
    RecallKeys* m_sentTexts;
    QLabel* lblRoom;
};
