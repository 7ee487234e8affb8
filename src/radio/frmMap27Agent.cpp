#include "radio/frmMap27Agent.h"

#include "core/Captions.h"
#include "core/StringSource.h"
#include "radio/TextIds.h"
#include "ui_frmMap27Agent.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <algorithm>

namespace {

const QColor AlertColor(0xb0, 0x10, 0x20);

// Keys that move the focus or close things; they never key the transmitter.
bool IsNavigationKey(int key)
{
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
        return true;
    default:
        return false;
    }
}

} // namespace

frmMap27Agent::frmMap27Agent(const IStringSource& strings)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint),
      m_strings(strings),
      m_form(std::make_unique<Ui::frmMap27Agent>())
{
    m_form->setupUi(this);
    LoadCaptions();
    const int line = m_form->lsParty->fontMetrics().height();
    m_form->lsParty->setFixedHeight(2 * line);
    QFont caption = m_form->lblCaption->font();
    caption.setPointSizeF(caption.pointSizeF() * 1.3);
    caption.setBold(true);
    m_form->lblCaption->setFont(caption);
    m_form->cmdPTT->installEventFilter(this);
    connect(m_form->cmdAnswerHungup, &QPushButton::clicked, this, &frmMap27Agent::MainButtonPressed);
    connect(m_form->cmdClose, &QPushButton::clicked, this, &frmMap27Agent::CloseButtonPressed);
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
    SetMainButton(m_strings.LoadString(RadioText::Cancel));
    m_form->cmdRetry->setEnabled(false);
    m_form->cmdRetry->hide();
    ShowEmergency(false);
}

void frmMap27Agent::MessagingPrepare(const QString& party)
{
    Prepare(party, RadioText::Cancel, false);
}

void frmMap27Agent::CallOutPrepare(const QString& caption, const QString& party)
{
    Prepare(party, RadioText::Cancel, true);
    SetCaption(caption);
}

void frmMap27Agent::InCallPrepare(const QString& caption, const QString& party, bool emergency)
{
    Prepare(party, RadioText::Answer, true);
    SetCaption(caption);
    ShowEmergency(emergency);
}

void frmMap27Agent::Prepare(const QString& party, int mainButtonText, bool call)
{
    ReleaseTransmit();
    Reset();
    m_form->lsParty->addItem(party);
    m_form->cmdPTT->setEnabled(call);
    m_form->cmdPTT->setVisible(call);
    SetMainButton(m_strings.LoadString(mainButtonText));
}

void frmMap27Agent::SetCaption(const QString& caption)
{
    setWindowTitle(caption);
    m_form->lblCaption->setText(caption);
}

void frmMap27Agent::SetMainButton(const QString& text)
{
    m_form->cmdAnswerHungup->setText(text);
}

void frmMap27Agent::AppendLog(const QString& text)
{
    m_form->txtLog->appendPlainText(text);
}

void frmMap27Agent::ShowAgent()
{
    if (!m_placed)
        Place();
    show();
    raise();
    activateWindow();
}

// The first time over the middle of the window that the operator works in; later where it was left.
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
    ReleaseTransmit();
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

void frmMap27Agent::PressTransmit()
{
    if (m_pttPressed)
        return;
    m_pttPressed = true;
    SetTransmitState(true);
}

// The transmitter is told even when it was not keyed: better once too often.
void frmMap27Agent::KeyUp()
{
    m_pttPressed = false;
    SetTransmitState(false);
}

void frmMap27Agent::ReleaseTransmit()
{
    if (m_pttPressed)
        KeyUp();
}

void frmMap27Agent::SetTransmitState(bool on)
{
    m_form->cmdPTT->setText(m_strings.LoadString(on ? RadioText::Transmitting : RadioText::TransmitReleased));
    m_form->cmdPTT->setDown(on);
    QPalette palette;
    if (on) {
        palette.setColor(QPalette::Button, AlertColor);
        palette.setColor(QPalette::ButtonText, Qt::white);
    }
    m_form->cmdPTT->setPalette(palette);
    Q_EMIT TransmitChanged(on);
}

bool frmMap27Agent::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        auto* key = static_cast<QKeyEvent*>(event);
        if (IsNavigationKey(key->key()))
            break;
        if (!key->isAutoRepeat()) {
            if (event->type() == QEvent::KeyPress)
                PressTransmit();
            else
                KeyUp();
        }
        return true;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        PressTransmit();
        break;
    case QEvent::MouseButtonRelease:
        KeyUp();
        break;
    case QEvent::FocusOut: // the release would go elsewhere, and the transmitter would stay keyed
        ReleaseTransmit();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void frmMap27Agent::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange) {
        if (isActiveWindow() && m_form->cmdPTT->isVisible())
            m_form->cmdPTT->setFocus();
        else if (!isActiveWindow())
            ReleaseTransmit();
    }
    QWidget::changeEvent(event);
}

void frmMap27Agent::closeEvent(QCloseEvent* event)
{
    event->ignore();
}
