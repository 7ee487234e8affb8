#include "core/logon/frmPassword.h"

#include "core/texts/StringSourceImpl.h"
#include "support/DialogDriver.h"
#include "support/ScriptedPrompt.h"
#include "support/TestDatabase.h"

#include <QLineEdit>

using driver::Child;
using driver::Click;
using driver::Type;

namespace {

class frmPasswordTest : public testing::Test {
protected:
    void SetUp() override
    {
        QObject::connect(&form, &frmPassword::PasswordChanged,
                         [this](const QString& text) { messages << text; });
        form.show();
    }

    void Enter(const QString& oldPassword, const QString& newPassword, const QString& repeated)
    {
        Type(form, "txt_0", oldPassword);
        Type(form, "txt_1", newPassword);
        Type(form, "txt_2", repeated);
        Click(form, "Command2");
    }

    QStringList Fields()
    {
        QStringList texts;
        for (const char* name : {"txt_0", "txt_1", "txt_2"})
            texts << Child<QLineEdit>(form, name).text();
        return texts;
    }

    CStringSourceImpl strings{QStringList{}};
    TestDatabase database;
    TestSession session{database};
    ScriptedPrompt prompt;
    frmPassword form{session, prompt, strings};
    QStringList messages;
};

const QStringList empty = {"", "", ""};

TEST_F(frmPasswordTest, ChangesTheOwnPassword)
{
    Enter("secret", "Better", "Better");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(messages, QStringList{"Password changed."});
    EXPECT_NO_THROW(database.Open("admin", "Better"));
    EXPECT_THROW(database.Open("admin", "secret"), dao::Error);
    form.show();
    EXPECT_EQ(Fields(), empty);
}

TEST_F(frmPasswordTest, DifferentNewPasswordsEmptyOnlyThemselves)
{
    prompt.ExpectWarning("New password is not entered correctly. Try again.");
    prompt.whileOpen = [this] { EXPECT_EQ(Fields(), (QStringList{"secret", "", ""})); };
    Enter("secret", "better", "Better");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(form.focusWidget()->objectName(), "txt_1");
    EXPECT_NO_THROW(database.Open());
}

TEST_F(frmPasswordTest, ARefusedChangeEmptiesAllFieldsAndKeepsThePassword)
{
    prompt.ExpectWarning("The old password is wrong. Your password stays as it was.");
    Enter("Secret", "better", "better");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(Fields(), empty);
    EXPECT_EQ(form.focusWidget()->objectName(), "txt_0");

    prompt.ExpectWarning(strings.LoadString(dao::TextId(dao::Kind::BadPassword)));
    Enter("secret", "", "");
    EXPECT_NO_THROW(database.Open());
    EXPECT_TRUE(messages.isEmpty());
}

TEST_F(frmPasswordTest, CancelAndCloseOnlyHide)
{
    Type(form, "txt_0", "secret");
    Click(form, "cmdCancel");
    EXPECT_FALSE(form.isVisible());
    form.show();
    EXPECT_EQ(Fields(), empty);
    form.close();
    EXPECT_FALSE(form.isVisible());
    EXPECT_NO_THROW(database.Open());
}

} // namespace
