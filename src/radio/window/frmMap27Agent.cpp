#include "radio/window/frmMap27Agent.h"

#include "core/base/Clock.h"
#include "core/desktop/KeyGuard.h"
#include "core/desktop/ShowWindow.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/PlainKey.h"
#include "radio/base/TextIds.h"
#include "radio/base/Transaction.h"
#include "radio/window/CallKeys.h"
#include "radio/window/FrontRow.h"
#include "radio/window/KeyboardHeir.h"
#include "radio/window/TransmitButton.h"
#include "ui_frmMap27Agent.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <algorithm>

namespace {

const QColor AlertColor(0xb0, 0x10, 0x20);

// A key press meant for Answer must not hang up the call it has just answered.
constexpr std::chrono::seconds AnswerPause{1};

constexpr Qt::Key CloseKey = Qt::Key_F9;

// Different keys, so that a second press never does anything but what the first did.
Qt::Key MainKey(int mainText)
{
    switch (mainText) {
    case RadioText::Answer:
        return Qt::Key_F6;
    case RadioText::Hungup:
        return Qt::Key_F7;
    default:
        return Qt::Key_F8;
    }
}

QString NameOf(Qt::Key key)
{
    return QKeySequence(key).toString(QKeySequence::NativeText);
}

} // namespace

frmMap27Agent::frmMap27Agent(const IStringSource& strings, const Clock& clock)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint),
      m_strings(strings),
      m_form(std::make_unique<Ui::frmMap27Agent>()),
      m_clock(clock),
      m_keys(std::make_unique<CallKeys>(clock))
{
    m_form->setupUi(this);
    LoadCaptions();
    const int line = m_form->lsParty->fontMetrics().height();
    m_form->lsParty->setFixedHeight(2 * line);
    QFont caption = m_form->lblCaption->font();
    caption.setPointSizeF(caption.pointSizeF() * 1.3);
    caption.setBold(true);
    m_form->lblCaption->setFont(caption);
    m_transmit = new TransmitButton(*m_form->cmdPTT, clock);
    new KeyGuard(*this, clock, std::chrono::milliseconds(0));
    new FrontRow(*this);
    new KeyboardHeir(*this);
    m_form->cmdAnswerHungup->installEventFilter(this);
    connect(m_form->cmdAnswerHungup, &QPushButton::clicked, this, &frmMap27Agent::PressMainButton);
    connect(m_form->cmdClose, &QPushButton::clicked, this, &frmMap27Agent::CloseButtonPressed);
    connect(m_transmit, &TransmitButton::Switched, this, &frmMap27Agent::TransmitRequested);
    connect(m_keys.get(), &CallKeys::CallWindowAsked, this, [this] {
        if (isVisible())
            Bring(Activation::Take);
    });
    Reset();
}

frmMap27Agent::~frmMap27Agent() = default;

void frmMap27Agent::LoadCaptions()
{
    ::LoadCaptions(*this, m_strings);
    m_form->lblCaption->setText(windowTitle());
}

void frmMap27Agent::Reset()
{
    m_form->lsParty->clear();
    m_form->txtLog->clear();
    m_form->cmdAnswerHungup->setEnabled(true);
    SetMainButton(RadioText::Cancel);
    m_form->cmdRetry->setEnabled(false);
    m_form->cmdRetry->hide();
    ShowEmergency(false);
}

void frmMap27Agent::MessagingPrepare(const QString& party)
{
    Prepare(party, RadioText::Cancel, false, false);
}

void frmMap27Agent::CallOutPrepare(const QString& caption, const QString& party)
{
    Prepare(party, RadioText::Cancel, true, true);
    SetCaption(caption);
}

void frmMap27Agent::InCallPrepare(const CallLook& look, const QString& party)
{
    Prepare(party, RadioText::Answer, true, !look.data);
    SetCaption(look.caption);
    ShowEmergency(look.emergency);
}

void frmMap27Agent::Prepare(const QString& party, int mainButtonText, bool call, bool talk)
{
    m_transmit->LetGo();
    Reset();
    m_form->lsParty->addItem(party);
    m_isCall = call;
    m_form->cmdPTT->setEnabled(talk);
    m_form->cmdPTT->setVisible(talk);
    SetMainButton(mainButtonText);
}

void frmMap27Agent::SetCaption(const QString& caption)
{
    setWindowTitle(caption);
    m_form->lblCaption->setText(caption);
}

void frmMap27Agent::SetMainButton(int textId)
{
    m_answeredAt.reset();
    if (m_mainText == RadioText::Answer && textId == RadioText::Hungup)
        m_answeredAt = m_clock.Ticks();
    m_mainText = textId;
    m_form->cmdAnswerHungup->setText(m_strings.LoadString(textId));
    TellKeys();
}

void frmMap27Agent::TellKeys()
{
    const auto tip = [this](Qt::Key key) {
        return FormatMessage(m_strings, RadioText::KeyTip, {NameOf(key)});
    };
    m_form->cmdAnswerHungup->setToolTip(tip(MainKey(m_mainText)));
    m_form->cmdClose->setToolTip(tip(CloseKey));
    m_form->lblKeys->setText(
        FormatMessage(m_strings, RadioText::CallKeys,
                      {NameOf(MainKey(m_mainText)), m_form->cmdAnswerHungup->text(), NameOf(CloseKey),
                       m_form->cmdClose->text(), NameOf(CallKeys::LeadKey)}));
}

// Whoever answers will talk next.
void frmMap27Agent::PressMainButton()
{
    if (m_mainText == RadioText::Answer && m_form->cmdPTT->isVisible())
        m_form->cmdPTT->setFocus();
    Q_EMIT MainButtonPressed();
}

void frmMap27Agent::AppendLog(const QString& text)
{
    m_form->txtLog->appendPlainText(text);
}

// Who has sent a message writes the next one: a blank meant for it must not press Cancel.
void frmMap27Agent::ShowAgent()
{
    Bring(m_isCall ? Activation::Take : Activation::Leave);
}

void frmMap27Agent::ShowUnasked()
{
    Bring(m_keys->IsKeyboardFree() ? Activation::Take : Activation::Mark);
}

void frmMap27Agent::Bring(Activation activation)
{
    if (!m_placed)
        Place();
    BringToScreen(*this, activation);
}

// The first time it opens over the middle of the operator's current window, later where it was left.
void frmMap27Agent::Place()
{
    QWidgetList windows = QApplication::topLevelWidgets();
    windows.prepend(QApplication::activeWindow());
    const auto below = std::find_if(windows.begin(), windows.end(), [this](const QWidget* window) {
        return window && window != this && window->isVisible() && window->windowType() != Qt::Popup;
    });
    if (below != windows.end())
        move((*below)->frameGeometry().center() - rect().center());
    m_placed = true;
}

void frmMap27Agent::HideAgent()
{
    m_transmit->LetGo();
    hide();
}

void frmMap27Agent::ShowEmergency(bool emergency)
{
    QPalette palette;
    if (emergency) {
        palette.setColor(QPalette::Window, AlertColor);
        palette.setColor(QPalette::WindowText, Qt::white);
    }
    m_form->lblCaption->setPalette(palette);
    m_form->lblCaption->setAutoFillBackground(emergency);
}

void frmMap27Agent::ShowTransmitting(bool on)
{
    m_form->cmdPTT->setText(m_strings.LoadString(on ? RadioText::Transmitting : RadioText::TransmitReleased));
    m_form->cmdPTT->setDown(on);
    QPalette palette;
    if (on) {
        palette.setColor(QPalette::Button, AlertColor);
        palette.setColor(QPalette::ButtonText, Qt::white);
    }
    m_form->cmdPTT->setPalette(palette);
}

bool frmMap27Agent::eventFilter(QObject* watched, QEvent* event)
{
    return !MayHangUp(*event) || QWidget::eventFilter(watched, event);
}

// Whether the main button may see an event.
bool frmMap27Agent::MayHangUp(const QEvent& event) const
{
    if (!m_answeredAt || m_clock.Ticks() - *m_answeredAt >= AnswerPause)
        return true;
    if (event.type() == QEvent::MouseButtonDblClick)
        return false;
    if (event.type() != QEvent::KeyPress)
        return true;
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key != Qt::Key_Space && key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Select;
}

void frmMap27Agent::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange) {
        if (isActiveWindow() && m_form->cmdPTT->isVisible())
            m_form->cmdPTT->setFocus();
        else if (!isActiveWindow())
            m_transmit->LetGo();
    }
    QWidget::changeEvent(event);
}

void frmMap27Agent::keyPressEvent(QKeyEvent* event)
{
    if (IsPlain(*event, MainKey(m_mainText)))
        PressMainButton();
    else if (IsPlain(*event, CloseKey))
        Q_EMIT CloseButtonPressed();
    else
        QWidget::keyPressEvent(event);
}

void frmMap27Agent::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
