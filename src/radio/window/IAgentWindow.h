#pragma once

#include <QString>

struct CallLook;

// The dialogue of the transaction in progress, as the radio agent drives it.
struct IAgentWindow {
    virtual ~IAgentWindow() = default;

    virtual void Reset() = 0;
    virtual void MessagingPrepare(const QString& party) = 0;
    virtual void CallOutPrepare(const QString& caption, const QString& party) = 0;
    virtual void InCallPrepare(const CallLook& look, const QString& party) = 0;
    virtual void SetCaption(const QString& caption) = 0;
    // Catalogue id of its caption: Cancel, Answer or Hungup.
    virtual void SetMainButton(int textId) = 0;
    virtual void AppendLog(const QString& text) = 0;
    virtual bool IsShown() const = 0;
    // The radio has been told to transmit, or to stop.
    virtual void ShowTransmitting(bool on) = 0;
    // Shows the window above the others. It takes the keyboard for a call, not for a message.
    virtual void ShowAgent() = 0;
    // The same for what nobody at this console asked for: it leaves the keyboard alone while somebody is
    // typing.
    virtual void ShowUnasked() = 0;
    // On return everything set so far is on the screen.
    virtual void PaintNow() = 0;
    virtual void HideAgent() = 0;
};
