#pragma once

#include "radio/IAgentWindow.h"

#include <QWidget>
#include <memory>

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
    explicit frmMap27Agent(const IStringSource& strings);
    ~frmMap27Agent() override;

    void Reset() override;
    void MessagingPrepare(const QString& party) override;
    void CallOutPrepare(const QString& caption, const QString& party) override;
    void InCallPrepare(const QString& caption, const QString& party, bool emergency) override;
    void SetCaption(const QString& caption) override;
    void SetMainButton(const QString& text) override;
    void AppendLog(const QString& text) override;
    bool IsShown() const override { return isVisible(); }
    void ShowAgent() override;
    void HideAgent() override;

Q_SIGNALS:
    void MainButtonPressed();
    void CloseButtonPressed();
    void TransmitChanged(bool on);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void LoadCaptions();
    void Place();
    void Prepare(const QString& party, int mainButtonText, bool call);
    void ShowEmergency(bool emergency);
    void PressTransmit();
    void KeyUp();
    void ReleaseTransmit();
    void SetTransmitState(bool on);

    const IStringSource& m_strings;
    std::unique_ptr<Ui::frmMap27Agent> m_form;
    bool m_pttPressed = false;
    bool m_placed = false;
};
