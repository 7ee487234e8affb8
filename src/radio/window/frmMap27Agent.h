#pragma once

#include "radio/window/IAgentWindow.h"

#include <QWidget>
#include <chrono>
#include <memory>
#include <optional>

enum class Activation;
class CallKeys;
class TransmitButton;
struct Clock;
struct IStringSource;

namespace Ui {
class frmMap27Agent;
}

// The radio interface window: who the other party is, what is happening, and the buttons of the transaction
// in progress. It decides nothing. The operator cannot close it from its frame; it stays above the other
// windows and is not blocked by a dialog of the main window, so that a call can be answered at any time.
class frmMap27Agent : public QWidget, public IAgentWindow {
    Q_OBJECT

public:
    // Both must outlive it.
    frmMap27Agent(const IStringSource& strings, const Clock& clock);
    ~frmMap27Agent() override;

    void Reset() override;
    void MessagingPrepare(const QString& party) override;
    void CallOutPrepare(const QString& caption, const QString& party) override;
    void InCallPrepare(const CallLook& look, const QString& party) override;
    void SetCaption(const QString& caption) override;
    void SetMainButton(int textId) override;
    void AppendLog(const QString& text) override;
    bool IsShown() const override { return isVisible(); }
    void ShowTransmitting(bool on) override;
    void ShowAgent() override;
    void ShowUnasked() override;
    void PaintNow() override { repaint(); }
    void HideAgent() override;

Q_SIGNALS:
    void MainButtonPressed();
    void CloseButtonPressed();
    // The transmit button is being held down, or has been released.
    void TransmitRequested(bool on);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void LoadCaptions();
    void Bring(Activation activation);
    void Place();
    // `talk`: with a transmit button.
    void Prepare(const QString& party, int mainButtonText, bool call, bool talk);
    void ShowEmergency(bool emergency);
    void PressMainButton();
    bool MayHangUp(const QEvent& event) const;
    void TellKeys();

    const IStringSource& m_strings;
    std::unique_ptr<Ui::frmMap27Agent> m_form;
    const Clock& m_clock;
    std::unique_ptr<CallKeys> m_keys;
    TransmitButton* m_transmit;                            // a child
    int m_mainText = 0;                                    // the main button's caption, a catalogue id
    std::optional<std::chrono::milliseconds> m_answeredAt; // when Answer became Hungup
    bool m_isCall = false;                                 // not a message
    bool m_placed = false;
};
