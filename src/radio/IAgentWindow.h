#pragma once

#include <QString>

// The dialogue of the transaction in progress, as the radio agent drives it.
struct IAgentWindow {
    virtual ~IAgentWindow() = default;

    virtual void Reset() = 0;
    virtual void MessagingPrepare(const QString& party) = 0;
    virtual void CallOutPrepare(const QString& caption, const QString& party) = 0;
    virtual void InCallPrepare(const QString& caption, const QString& party, bool emergency) = 0;
    virtual void SetCaption(const QString& caption) = 0;
    virtual void SetMainButton(const QString& text) = 0;
    virtual void AppendLog(const QString& text) = 0;
    virtual bool IsShown() const = 0;
    // Shows the window, above the others.
    virtual void ShowAgent() = 0;
    virtual void HideAgent() = 0;
};
