#pragma once

#include "core/desktop/Prompt.h"
#include "support/QtPrinters.h"

#include <QList>
#include <functional>
#include <gtest/gtest.h>

// Boxes as a test expects them, in order. A box that is not the next one expected fails the test, and so does
// an expected box that never came.
class ScriptedPrompt : public IPrompt {
public:
    ~ScriptedPrompt() override { Finish(); }

    void ExpectQuestion(const QString& text, bool answer) { m_script.append({"question", text, answer}); }
    void ExpectConfirmation(const QString& text, bool answer)
    {
        m_script.append({"confirmation", text, answer});
    }
    void ExpectChoice(const QString& text, bool answer) { m_script.append({"choice", text, answer}); }
    void ExpectWarning(const QString& text) { m_script.append({"warning", text, true}); }
    void ExpectError(const QString& text) { m_script.append({"error", text, true}); }
    void ExpectInfo(const QString& text) { m_script.append({"info", text, true}); }

    // Runs while a box is open, for what happens behind it.
    std::function<void()> whileOpen;

    // Fails for expected boxes that have not come; the script is empty afterwards.
    void Finish()
    {
        for (const Box& box : m_script)
            ADD_FAILURE() << "expected " << box.kind << " never came: " << box.text.toStdString();
        m_script.clear();
    }

    bool AskQuestion(const QString& text) override { return Show("question", text); }
    bool AskConfirmation(const QString& text) override { return Show("confirmation", text); }
    bool AskChoice(const QString& text) override { return Show("choice", text); }
    void ShowWarning(const QString& text) override { Show("warning", text); }
    void ShowError(const QString& text) override { Show("error", text); }
    void ShowInfo(const QString& text) override { Show("info", text); }
    void SetAppName(const QString& name) override { appName = name; }

    QString appName;

private:
    struct Box {
        const char* kind;
        QString text;
        bool answer;
    };

    bool Show(const std::string& kind, const QString& text)
    {
        if (whileOpen)
            whileOpen();
        if (m_script.isEmpty()) {
            ADD_FAILURE() << "unexpected " << kind << ": " << text.toStdString();
            return false;
        }
        const Box expected = m_script.takeFirst();
        EXPECT_EQ(kind, expected.kind);
        EXPECT_EQ(text, expected.text);
        return expected.answer;
    }

    QList<Box> m_script;
};
