#include "mainwindow/send/SendPane.h"

#include "core/desktop/Keyboard.h"
#include "core/desktop/Prompt.h"
#include "core/sounds/Beeper.h"
#include "core/texts/StringSource.h"
#include "core/widgets/PlainKey.h"
#include "mainwindow/bars/KeyedToolBar.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/send/SendRules.h"
#include "mainwindow/send/StatusList.h"
#include "mainwindow/send/TypingHelp.h"
#include "radio/facade/Map27Executive.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

namespace {

constexpr int NarrowestPane = 400;    // a narrower pane is not rearranged
constexpr int BesideAddressBox = 195; // what is left and right of the address box, when that suffices
constexpr int RowGap = 2;
constexpr int Margin = 4;
constexpr int Gap = 6;
constexpr int ButtonPadding = 20;

using Style = KeyedToolBar::Style;

QComboBox* NewBox(const QString& name, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setCompleter(nullptr); // what is sent is what was typed
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(1);
    return box;
}

QLabel* NewLabel(const QString& name, int textId, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setProperty("textId", textId);
    return label;
}

bool IsBlank(const QString& text)
{
    return text.trimmed().isEmpty();
}

} // namespace

SendPane::SendPane(const Parts& parts, QWidget* parent)
    : QWidget(parent),
      m_strings(parts.strings),
      m_prompt(parts.prompt),
      m_beeper(parts.beeper),
      m_executive(parts.executive),
      m_session(parts.session)
{
    setObjectName(QStringLiteral("picSend"));
    BuildBoxes();
    BuildBars();
    BuildLabels();
    m_help = new TypingHelp({m_strings, m_executive, parts.database}, *cmbAddress, *cmbTextMessage, *this);
    OrderTabs();
    SelectEncoding(false);
}

void SendPane::BuildBoxes()
{
    cmbAddress = NewBox(QStringLiteral("cmbAddress"), this);
    cmbStatusMessage = NewBox(QStringLiteral("cmbStatusMessage"), this);
    cmbTextMessage = NewBox(QStringLiteral("cmbTextMessage"), this);
    for (QComboBox* box : {cmbAddress, cmbStatusMessage, cmbTextMessage}) {
        box->installEventFilter(this);
        box->lineEdit()->installEventFilter(this);
        // A screen reader announces a box by its contents, so its purpose is named on the field inside.
        const int label = box == cmbAddress ? MainText::ToLabel : MainText::MessageLabel;
        box->lineEdit()->setAccessibleName(m_strings.LoadString(label).remove(QLatin1Char('&')));
    }
    cmdSearchAddress = new QPushButton(this);
    cmdSearchAddress->setObjectName(QStringLiteral("cmdSearchAddress"));
    cmdSearchAddress->setProperty("textId", MainText::Search);
    connect(cmdSearchAddress, &QPushButton::clicked, this, [this] { Q_EMIT SearchRequested(Address()); });
    cmdSend = new QPushButton(this);
    cmdSend->setObjectName(QStringLiteral("cmdSend"));
    cmdSend->setProperty("textId", MainText::Send);
    cmdSend->setAutoDefault(true); // Enter presses it while it has the focus
    cmdSend->installEventFilter(this);
    connect(cmdSend, &QPushButton::clicked, this, &SendPane::Send);
}

void SendPane::BuildBars()
{
    tbMessageSelector = new ToolBarOf<MessageType>(QStringLiteral("tbMessageSelector"), this, Qt::Vertical);
    tbMessageSelector->setProperty("accessibleNameId", MainText::MessageTypeName);
    tbMessageSelector->AddButton(MessageType::Status, QStringLiteral("status"), Style::OneOfAll,
                                 MainText::StatusTip);
    tbMessageSelector->AddButton(MessageType::Text, QStringLiteral("text"), Style::OneOfAll,
                                 MainText::TextTip);
    tbMessageSelector->AddButton(MessageType::Call, QStringLiteral("call"), Style::OneOfAll,
                                 MainText::CallTip);
    tbMessageSelector->OnClick([this](MessageType type) { SelectType(type); });

    tbSdmOptions = new ToolBarOf<Encoding>(QStringLiteral("tbSdmOptions"), this);
    tbSdmOptions->setProperty("accessibleNameId", MainText::EncodingName);
    tbSdmOptions->AddButton(Encoding::SevenBit, QStringLiteral("seven"), Style::OneOfAll, MainText::SevenTip,
                            QStringLiteral("bit7"));
    tbSdmOptions->AddButton(Encoding::EightBit, QStringLiteral("eight"), Style::OneOfAll, MainText::EightTip,
                            QStringLiteral("bit8"));
    tbSdmOptions->OnClick([this](Encoding) { m_help->Count(IsEightBitEncoding()); });

    tbCallOptions = new ToolBarOf<CallOption>(QStringLiteral("tbCallOptions"), this);
    tbCallOptions->setProperty("accessibleNameId", MainText::CallOptionsName);
    tbCallOptions->AddButton(CallOption::Emergency, QStringLiteral("emergency"), Style::Check,
                             MainText::EmergencyTip);
    tbCallOptions->AddButton(CallOption::Priority, QStringLiteral("priority"), Style::Check,
                             MainText::PriorityTip);
    tbCallOptions->AddButton(CallOption::Dialog, QStringLiteral("dialog"), Style::Check, MainText::DialogTip);
    tbCallOptions->OnClick([this](CallOption option) { CallOptionClicked(option); });
}

void SendPane::BuildLabels()
{
    Label1 = NewLabel(QStringLiteral("Label1"), MainText::ToLabel, this);
    Label2 = NewLabel(QStringLiteral("Label2"), MainText::MessageLabel, this);
    Label3 = NewLabel(QStringLiteral("Label3"), MainText::OptionsLabel, this);
    Label1->setBuddy(cmbAddress);
}

void SendPane::OrderTabs()
{
    const QWidgetList order = {cmbAddress,
                               cmbStatusMessage,
                               cmbTextMessage,
                               tbSdmOptions->Button(Encoding::SevenBit),
                               tbSdmOptions->Button(Encoding::EightBit),
                               tbCallOptions->Button(CallOption::Emergency),
                               tbCallOptions->Button(CallOption::Priority),
                               tbCallOptions->Button(CallOption::Dialog),
                               cmdSend,
                               cmdSearchAddress,
                               tbMessageSelector->Button(MessageType::Status),
                               tbMessageSelector->Button(MessageType::Text),
                               tbMessageSelector->Button(MessageType::Call)};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

QString SendPane::Address() const
{
    return cmbAddress->currentText();
}

void SendPane::SetAddress(const QString& addresses)
{
    cmbAddress->setEditText(addresses);
}

void SendPane::ReplaceStati(const std::vector<StatusItem>& stati)
{
    const QVariant chosen = cmbStatusMessage->currentData();
    const QString typed = cmbStatusMessage->currentText();
    SetStati(stati);
    cmbStatusMessage->setCurrentIndex(chosen.isValid() ? cmbStatusMessage->findData(chosen) : -1);
    if (cmbStatusMessage->currentIndex() < 0)
        cmbStatusMessage->setEditText(typed);
}

void SendPane::SetStati(const std::vector<StatusItem>& stati)
{
    cmbStatusMessage->clear();
    for (const StatusItem& item : stati)
        cmbStatusMessage->addItem(item.text, item.code);
    cmbStatusMessage->setCurrentIndex(-1); // nothing is chosen before the operator chooses
    cmbStatusMessage->clearEditText();
}

void SendPane::SelectType(MessageType type)
{
    tbMessageSelector->SetPressed(type, true);
    const bool status = type == MessageType::Status;
    const bool text = type == MessageType::Text;
    const auto show = [](QWidget* control, bool on) {
        control->setVisible(on);
        control->setEnabled(on);
    };
    show(cmbStatusMessage, status);
    show(cmbTextMessage, text);
    show(tbSdmOptions, text);
    show(&m_help->Room(), text);
    show(tbCallOptions, !status && !text);

    Label2->setVisible(status || text);
    Label2->setBuddy(text ? cmbTextMessage : cmbStatusMessage);
    Label3->setVisible(!status);
    Label3->setBuddy(text ? tbSdmOptions->FirstEnabled() : tbCallOptions->FirstEnabled());

    QComboBox* message = status ? cmbStatusMessage : cmbTextMessage;
    const bool addressFirst = (!status && !text) || IsBlank(Address());
    QComboBox* first = addressFirst ? cmbAddress : message;
    first->setFocus();
    first->lineEdit()->selectAll(); // what is typed next replaces what was sent last
}

void SendPane::PrepareCall(const CallOptions& options)
{
    SelectType(MessageType::Call);
    tbCallOptions->SetPressed(CallOption::Emergency, options.emergency);
    tbCallOptions->SetPressed(CallOption::Priority, options.priority);
    tbCallOptions->SetPressed(CallOption::Dialog, options.dialog);
}

void SendPane::Prepare(const Favourite& favourite)
{
    SetAddress(favourite.to);
    if (!favourite.status)
        return PrepareCall({.emergency = false, .priority = false, .dialog = true});
    SelectType(MessageType::Status);
    cmbStatusMessage->setCurrentIndex(cmbStatusMessage->findData(*favourite.status));
    if (cmbStatusMessage->currentIndex() < 0) // none of the network's, but it can be sent
        cmbStatusMessage->setEditText(QStringLiteral("%1").arg(*favourite.status, 2, 10, QLatin1Char('0')));
    cmbStatusMessage->lineEdit()->selectAll();
}

void SendPane::PrepareText(const QString& text)
{
    SelectType(MessageType::Text);
    cmbTextMessage->setEditText(text);
}

std::optional<Favourite> SendPane::Composed() const
{
    const QStringList to = Map27Executive::ParseAddressLine(Address());
    const auto type = tbMessageSelector->Pressed();
    const auto status = StatusCodeOf(cmbStatusMessage->currentText());
    if (to.size() != 1 || type == MessageType::Text || (type == MessageType::Status && !status))
        return {};
    return Favourite{to.first(), type == MessageType::Status ? status : std::nullopt};
}

QString SendPane::ComposedText() const
{
    return MessageOf(cmbTextMessage->currentText()).value_or(QString());
}

void SendPane::SelectEncoding(bool eightBit)
{
    tbSdmOptions->SetPressed(eightBit ? Encoding::EightBit : Encoding::SevenBit, true);
    m_help->Count(IsEightBitEncoding());
}

bool SendPane::IsEightBitEncoding() const
{
    return tbSdmOptions->IsPressed(Encoding::EightBit);
}

bool SendPane::IsEmergencyCall() const
{
    return tbCallOptions->IsPressed(CallOption::Emergency);
}

bool SendPane::IsPriorityCall() const
{
    return tbCallOptions->IsPressed(CallOption::Priority);
}

bool SendPane::IsDialogAllowed() const
{
    return tbCallOptions->IsPressed(CallOption::Dialog);
}

// A call cannot be both an emergency and a priority call.
void SendPane::CallOptionClicked(CallOption option)
{
    if (option == CallOption::Emergency && IsEmergencyCall())
        tbCallOptions->SetPressed(CallOption::Priority, false);
    else if (option == CallOption::Priority && IsPriorityCall())
        tbCallOptions->SetPressed(CallOption::Emergency, false);
}

void SendPane::Send()
{
    if (!m_session.LoggedOn)
        return;
    const QStringList destinations = Map27Executive::ParseAddressLine(Address());
    if (destinations.isEmpty())
        return Refuse(*cmbAddress);
    const std::optional<MessageType> type = tbMessageSelector->Pressed();
    const auto code = StatusCodeOf(cmbStatusMessage->currentText());
    const auto message = MessageOf(cmbTextMessage->currentText());
    if (type == MessageType::Status && !code)
        return Refuse(*cmbStatusMessage);
    if (type == MessageType::Text && !message)
        return Refuse(*cmbTextMessage);
    if (destinations.size() > 1) {
        m_prompt.ShowWarning(m_strings.LoadString(MainText::MultipleAddresses));
        return;
    }
    m_help->Remember(destinations.first(), type == MessageType::Text ? *message : QString());
    if (type == MessageType::Status)
        m_executive.SendStatus(destinations.first(), *code);
    else if (type == MessageType::Text)
        m_executive.SendText(destinations.first(), *message, IsEightBitEncoding());
    else if (type == MessageType::Call)
        m_executive.StartCall(destinations.first(), IsEmergencyCall(), IsPriorityCall(), IsDialogAllowed());
}

void SendPane::Refuse(QComboBox& box)
{
    m_beeper.Beep();
    box.setFocus();
}

bool SendPane::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && IsPlainEnter(*static_cast<QKeyEvent*>(event))) {
        if (IsFirstPress(*static_cast<QKeyEvent*>(event)) && !m_help->AcceptParty())
            Send();
        return true;
    }
    ForgetKeys(*event);
    // The wheel would change what is sent unnoticed.
    if (event->type() == QEvent::Wheel) {
        event->ignore();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

// A held Enter sends once. Under X its repeats look like separate presses when they are not queued together,
// or when the key went down in another window.
bool SendPane::IsFirstPress(const QKeyEvent& event)
{
    return m_down.insert(Keyboard::CodeOf(event)).second;
}

void SendPane::ForgetKeys(const QEvent& event)
{
    if (event.type() == QEvent::FocusIn) {
        m_down = Keyboard::Held();
    } else if (event.type() == QEvent::KeyRelease) {
        const quint32 code = Keyboard::CodeOf(static_cast<const QKeyEvent&>(event));
        if (!Keyboard::Held().contains(code))
            m_down.erase(code);
    }
}

void SendPane::resizeEvent(QResizeEvent*)
{
    LayOut();
}

void SendPane::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange) {
        m_placed = false;
        LayOut();
    }
    QWidget::changeEvent(event);
}

int SendPane::RowHeight() const
{
    return std::max(cmbAddress->sizeHint().height(), tbCallOptions->sizeHint().height());
}

int SendPane::PaneHeight() const
{
    return 3 * RowHeight() + 2 * RowGap + 2 * Margin;
}

void SendPane::LayOut()
{
    if (width() >= NarrowestPane || !m_placed) {
        PlaceControls(std::max(width(), NarrowestPane));
        m_placed = true;
    }
}

void SendPane::PlaceControls(int paneWidth)
{
    const int row = RowHeight();
    const int top1 = Margin;
    const int top2 = top1 + row + RowGap;
    const int top3 = top2 + row + RowGap;
    const auto textWidth = [this](const QPushButton* button) {
        return fontMetrics().horizontalAdvance(button->text()) + ButtonPadding;
    };

    const int selectorWidth = tbMessageSelector->sizeHint().width();
    tbMessageSelector->setGeometry(Margin, top1, selectorWidth, top3 + row - top1);
    const int labelLeft = Margin + selectorWidth + Gap;
    const int labelWidth =
        std::max({Label1->sizeHint().width(), Label2->sizeHint().width(), Label3->sizeHint().width()});
    const int left = labelLeft + labelWidth + Gap;
    const int searchNeeds = textWidth(cmdSearchAddress);
    const int beside = std::max(BesideAddressBox, left + Gap + searchNeeds + Margin);
    const int boxWidth = paneWidth - beside;
    const int boxRight = left + boxWidth;

    Label1->setGeometry(labelLeft, top1, labelWidth, row);
    Label2->setGeometry(labelLeft, top2, labelWidth, row);
    Label3->setGeometry(labelLeft, top3, labelWidth, row);
    cmbAddress->setGeometry(left, top1, boxWidth, row);
    cmbStatusMessage->setGeometry(left, top2, boxWidth, row);
    cmbTextMessage->setGeometry(left, top2, boxWidth, row);
    cmdSearchAddress->setGeometry(boxRight + Gap, top1, paneWidth - Margin - boxRight - Gap, row);
    tbSdmOptions->setGeometry(left, top3, tbSdmOptions->sizeHint().width(), row);
    tbCallOptions->setGeometry(left, top3, tbCallOptions->sizeHint().width(), row);
    const int sendWidth = std::max(textWidth(cmdSend), 2 * row + row);
    cmdSend->setGeometry(boxRight - sendWidth, top3, sendWidth, row);
    const int roomLeft = left + tbSdmOptions->width() + Gap;
    m_help->Room().setGeometry(roomLeft, top3, std::max(0, boxRight - sendWidth - Gap - roomLeft), row);
}
