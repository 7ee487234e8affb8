#pragma once

#include "core/desktop/FreshKeys.h"
#include "mainwindow/send/QuickStore.h"

#include <QWidget>

class Map27Executive;
class QComboBox;
class QKeyEvent;
class QLabel;
class QPushButton;
class TypingHelp;
struct IBeeper;
struct IDbSession;
struct IPrompt;
struct IStringSource;
struct SessionState;
struct StatusItem;
template <typename Key> class ToolBarOf;

// "picSend": composes a status message, a text message or a call to one address and checks it; sending is the
// radio link's. Keeps its contents after sending.
class SendPane : public QWidget {
    Q_OBJECT

public:
    enum class MessageType { Status, Text, Call };
    struct CallOptions {
        bool emergency = false;
        bool priority = false;
        bool dialog = false; // the called party may talk back
    };
    struct Parts {
        const IStringSource& strings;
        IPrompt& prompt;
        IBeeper& beeper;
        Map27Executive& executive;
        const SessionState& session;
        IDbSession& database; // its directory completes addresses
    };

    SendPane(const Parts& parts, QWidget* parent);

    // Fixed by the pane's font.
    int PaneHeight() const;

    QString Address() const;
    void SetAddress(const QString& addresses);
    void SetStati(const std::vector<StatusItem>& stati);
    // The same, keeping what is chosen or typed.
    void ReplaceStati(const std::vector<StatusItem>& stati);

    // Presses the selector button and shows what belongs to it.
    void SelectType(MessageType type);
    void PrepareCall(const CallOptions& options);
    // Fill the pane; nothing is sent.
    void Prepare(const Favourite& favourite);
    void PrepareText(const QString& text);
    // The status or call that stands here, if it is one, and the text.
    std::optional<Favourite> Composed() const;
    QString ComposedText() const;
    // Whether nobody is addressed and no text stands here.
    bool IsEmpty() const { return Address().trimmed().isEmpty() && ComposedText().isEmpty(); }
    void SelectEncoding(bool eightBit);

    bool IsEightBitEncoding() const;
    bool IsEmergencyCall() const;
    bool IsPriorityCall() const;
    bool IsDialogAllowed() const;

    // The command cmdSend. Refused input is answered with a beep, and its box gets the focus. Does nothing
    // while nobody is logged on.
    void Send();

    QPushButton& SendButton() { return *cmdSend; }
    QPushButton& SearchButton() { return *cmdSearchAddress; }

Q_SIGNALS:
    void SearchRequested(const QString& lookfor);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    enum class Encoding { SevenBit, EightBit };
    enum class CallOption { Emergency, Priority, Dialog };

    void BuildBoxes();
    void BuildBars();
    void BuildLabels();
    void OrderTabs();
    void CallOptionClicked(CallOption option);
    void Refuse(QComboBox& box);
    bool IsFirstPress(const QKeyEvent& event);
    void ForgetKeys(const QEvent& event);
    void LayOut();
    void PlaceControls(int paneWidth);
    int RowHeight() const;

    const IStringSource& m_strings;
    IPrompt& m_prompt;
    IBeeper& m_beeper;
    Map27Executive& m_executive;
    const SessionState& m_session;
    bool m_placed = false;
    TypingHelp* m_help;
    FreshKeys::Keys m_down; // that have sent, or went down elsewhere
    ToolBarOf<MessageType>* tbMessageSelector;
    ToolBarOf<Encoding>* tbSdmOptions;
    ToolBarOf<CallOption>* tbCallOptions;
    QComboBox* cmbAddress;
    QComboBox* cmbStatusMessage;
    QComboBox* cmbTextMessage;
    QPushButton* cmdSearchAddress;
    QPushButton* cmdSend;
    QLabel* Label1; // of cmbAddress
    QLabel* Label2; // of the message boxes
    QLabel* Label3; // of the options
};
