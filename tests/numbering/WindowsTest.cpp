// Choice of the numbering, its ANN parameters and the diagnostics, with the simulated radio.

#include "core/session/Registry.h"
#include "numbering/frmActionetSettings.h"
#include "numbering/frmNumInfoDiagnostics.h"
#include "numbering/frmSelectNumbering.h"
#include "radio/RadioStack.h"
#include "support/DialogDriver.h"

#include <QComboBox>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>

namespace {

class NumberingWindows : public testing::Test {
protected:
    template <typename Window> Window& Open()
    {
        auto shown = std::make_unique<Window>(
            NumberingServices{stack.strings, stack.prompt, stack.session, stack.executive});
        Window& result = *shown;
        window = std::move(shown);
        window->show();
        return result;
    }
    void Click(const char* name) { driver::Click(*window, name); }
    QSlider& Slider(const char* name) { return driver::Child<QSlider>(*window, name); }
    QString Counts() { return driver::Child<QPlainTextEdit>(*window, "txtStat").toPlainText(); }
    QString Stored(const char* key) { return RegistryGet(stack.session, key, "none"); }
    // The database fails after so many more uses.
    void FailAfter(int uses)
    {
        stack.session.onUse = [uses]() mutable {
            if (--uses < 0)
                throw Error(ErrorCode::General, "The disk is full.");
        };
    }

    RadioStack stack;
    std::unique_ptr<QDialog> window;
};

TEST_F(NumberingWindows, TheChosenNumberingIsStoredAfterAConfirmation)
{
    Open<frmSelectNumbering>();
    EXPECT_TRUE(driver::Child<QRadioButton>(*window, "optSubNumMPT1343").isChecked()) << "the default";
    Click("optSubNumACTIONET");
    stack.prompt.ExpectConfirmation(stack.Text(1000), false);
    Click("cmdSet");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(Stored("subscriber_numbering"), "none");
    FailAfter(1);
    stack.prompt.ExpectConfirmation(stack.Text(1000), true);
    stack.prompt.ExpectWarning("The disk is full.");
    Click("cmdSet");
    EXPECT_TRUE(window->isVisible()) << "what was not stored is not shown as done";
    stack.session.onUse = nullptr;
    stack.prompt.ExpectConfirmation(stack.Text(1000), true);
    stack.prompt.ExpectInfo(stack.Text(2000));
    Click("cmdSet");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Stored("subscriber_numbering"), "ACTIONET");

    RegistrySet(stack.session, "subscriber_numbering", "BY HAND");
    Open<frmSelectNumbering>();
    EXPECT_FALSE(driver::Child<QRadioButton>(*window, "optSubNumACTIONET").isChecked());
    stack.prompt.ExpectConfirmation(stack.Text(1000), true);
    stack.prompt.ExpectInfo(stack.Text(2000));
    Click("cmdSet");
    EXPECT_EQ(Stored("subscriber_numbering"), "BY HAND") << "nothing chosen, nothing stored";
}

TEST_F(NumberingWindows, AnnParametersAreLimitedStoredAndTakenAtOnce)
{
    RegistrySet(stack.session, "subscriber_numbering", "ACTIONET");
    EXPECT_THROW(stack.executive.Connect(), Error) << "not configured, but connected";
    ASSERT_TRUE(stack.RunUntil([this] { return stack.executive.MyAddress() == "/0000003"; }));
    frmNumInfoDiagnostics diagnostics(stack.strings, stack.executive);
    RadioViews views;
    views.status = &stack.views;
    views.numbering = &diagnostics;
    stack.executive.SetViews(views);
    QSignalSpy doubts(&stack.executive, &Map27Executive::NumberingDoubted);

    Open<frmActionetSettings>();
    auto& model = driver::Child<QComboBox>(*window, "cmbModel");
    EXPECT_EQ(model.currentIndex(), -1);
    EXPECT_EQ(Counts(),
              "Number of large fleets is 10, number of small fleets is 0, number of mini fleets is 0.");
    Slider("sldMEP").setValue(3);
    EXPECT_EQ(Slider("sldFPP").value(), 7);
    Slider("sldFPP").setValue(4);
    EXPECT_EQ(Counts(),
              "Number of large fleets is 4, number of small fleets is 30, number of mini fleets is 90.");
    Slider("sldFPP").setValue(10);
    EXPECT_EQ(Slider("sldMEP").value(), 0);
    Slider("sldFPP").setValue(0);
    stack.prompt.ExpectWarning(stack.Text(2120));
    Click("cmdSave");
    EXPECT_TRUE(window->isVisible());
    model.setCurrentIndex(3);
    FailAfter(2); // behind the first of the three values
    stack.prompt.ExpectWarning("The disk is full.");
    Click("cmdSave");
    EXPECT_TRUE(window->isVisible());
    stack.session.onUse = nullptr;
    EXPECT_EQ(Stored("ANN_MODEL") + Stored("ANN_FPP"), "nonenone") << "all or nothing";
    Click("cmdSave");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Stored("ANN_MODEL") + Stored("ANN_FPP") + Stored("ANN_MEP"), "300");

    EXPECT_EQ(stack.views.own, "---0000022") << "the own address, now that it can be converted";
    for (const char* dial : {"22", "0022", "0000022"})
        EXPECT_EQ(stack.executive.MakeFullAddress(dial), "0000022");

    // The radio says 2..71 and 7000..7009, by the parameters it is 1..70 and 71..80.
    ASSERT_EQ(doubts.count(), 1);
    EXPECT_EQ(doubts[0][0].toStringList().size(), 2);
    auto& label = driver::Child<QLabel>(diagnostics, "lblDoubts");
    EXPECT_TRUE(label.text().contains("2..71")) << label.text().toStdString();
    EXPECT_FALSE(label.isHidden());
    stack.executive.AskNumbering();
    stack.Run(1000);
    EXPECT_EQ(doubts.count(), 1) << "said once";
    EXPECT_EQ(driver::Child<QPlainTextEdit>(diagnostics, "txtDiags").toPlainText(),
              "PREFIX=0\nIDENT=3\nIBASEIDENT=2\nIMAXIDENT=71\nIDIGITS=2\nGBASEIDENT=7000\nGMAXIDENT=7009\n"
              "GDIGITS=2");
    stack.executive.Disconnect();
    EXPECT_EQ(doubts.count(), 2);
    EXPECT_TRUE(label.isHidden());
}

TEST_F(NumberingWindows, ANumberCanBeDialledAsSoonAsTheReportIsShown)
{
    struct View : INumberingView {
        void DisplayDiags(const RadioNumbering&) override { shown(); }
        std::function<void()> shown;
    } view;
    QString full;
    view.shown = [&] { EXPECT_NO_THROW(full = stack.executive.MakeFullAddress("22")); };
    RadioViews views;
    views.numbering = &view;
    stack.executive.SetViews(views);
    stack.LogOn();
    EXPECT_EQ(full, "200200122");
}

TEST_F(NumberingWindows, ParametersWrittenByHandDoNotLockAnybodyOut)
{
    RegistrySet(stack.session, "subscriber_numbering", "ACTIONET");
    const std::pair<const char*, const char*> wrong[] = {
        {"ANN_MODEL", "7"}, {"ANN_MODEL", "LARGE"}, {"ANN_FPP", "11"}, {"ANN_MEP", "many"}};
    for (const auto& [key, value] : wrong) {
        for (const auto& [good, goodValue] :
             {std::pair("ANN_MODEL", "1"), std::pair("ANN_FPP", "6"), std::pair("ANN_MEP", "4")})
            RegistrySet(stack.session, good, goodValue);
        RegistrySet(stack.session, key, value);
        try {
            stack.executive.Connect();
            ADD_FAILURE() << key << ' ' << value;
        } catch (const Error& error) {
            EXPECT_EQ(error.Code(), ErrorCode::NumberingNotConfigured) << key << ' ' << value;
        }
        EXPECT_EQ(stack.executive.CurrentNumberingName(), "ANN Subscriber Numbering") << "connected";
        Open<frmActionetSettings>();
        EXPECT_LE(Slider("sldFPP").value() + Slider("sldMEP").value(), 10);
    }
}

} // namespace
