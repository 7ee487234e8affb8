#include "core/settings/Settings.h"
#include "dao/Workspace.h"
#include "dao/tables/RegistryTable.h"
#include "numbering/FleetPlanTable.h"
#include "radio/line/SerialMap27Control.h"
#include "setup/frmSetUp.h"
#include "support/ConsoleStack.h"
#include "support/DialogDriver.h"
#include "support/FakeMap27Control.h"
#include "support/VirtualRadio.h"

#include <QLabel>
#include <QLineEdit>

using driver::Child;
using driver::Type;

namespace {

// The radio is unit 21 of 200200120 to 200200189, with groups beside them.
sim::Scenario WithFleets()
{
    sim::Scenario scenario;
    scenario.radio.address = {0, 3};
    scenario.radio.units.base = 2;
    scenario.radio.units.highest = 71;
    scenario.radio.groups.base = 7000;
    scenario.radio.groups.highest = 7009;
    return scenario;
}

// The assistant in front of a console on which nobody is logged on, with a simulated radio on a line.
class AssistantTest : public testing::Test {
protected:
    AssistantTest()
        : stack(clock, [](const IStringSource&) { return std::make_unique<FakeMap27Control>(); }),
          radio(clock, WithFleets()),
          wizard({.strings = stack.strings,
                  .settings = stack.settings,
                  .logon = stack.session,
                  .prompt = stack.prompt,
                  .beeper = stack.beeper,
                  .serial = stack.executive,
                  .ports = nullptr,
                  .makeControl =
                      [this] {
                          auto made = std::make_unique<SerialMap27Control>(
                              stack.strings, clock, SerialMap27Control::Place::UsersThread, radio.Ports());
                          control = made.get();
                          return made;
                      },
                  .startDemonstration = [] { return QString(); },
                  .logOnNextAs =
                      [this](const QString& user, const QString& password) {
                          next = {user, password};
                      },
                  .options = TestDatabase::Options()})
    {
        wizard.show();
    }

    // A key where the keyboard is.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* focus = wizard.focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &wizard, key, modifiers);
    }
    QWidget& Page() { return *wizard.currentPage(); }
    QString PageName() { return wizard.currentPage()->objectName(); }
    QString Said() { return Child<QLabel>(Page(), "lblMessage").text(); }
    // Until the radio has said all that it says by itself.
    void RunRadio()
    {
        for (int i = 0; i < 200 && control != nullptr && !Said().contains("ident"); ++i) {
            radio.Step();
            clock.Step(std::chrono::milliseconds(20));
            control->OnTime();
            QCoreApplication::processEvents();
        }
    }

    FakeClock clock;
    ConsoleStack stack;
    VirtualRadio radio;
    SerialMap27Control* control = nullptr;
    QStringList next;
    frmSetUp wizard;
};

} // namespace

TEST_F(AssistantTest, KeysAloneMakeADatabaseWithTheNumberingOfTheRadio)
{
    const QString file = stack.folder.filePath("new/site.kyndb");
    Press(Qt::Key_Return);
    ASSERT_EQ(PageName(), "pageDatabase");
    Type(Page(), "txtFile", stack.database.location.database);
    Press(Qt::Key_Return);
    ASSERT_EQ(PageName(), "pageDatabase") << "a file that exists is never overwritten";
    EXPECT_TRUE(Said().contains(stack.database.location.database)) << Said().toStdString();
    Type(Page(), "txtFile", file);
    Press(Qt::Key_Return);

    ASSERT_EQ(PageName(), "pageRadio");
    Type(Page(), "cmbPort", "COM2");
    Child<QWidget>(Page(), "cmdTestRadio").setFocus();
    Press(Qt::Key_Space);
    RunRadio();
    EXPECT_TRUE(Said().contains("ident")) << Said().toStdString();
    Child<QWidget>(Page(), "cmbPort").setFocus();
    Press(Qt::Key_Return);

    ASSERT_EQ(PageName(), "pageNumbering");
    EXPECT_FALSE(Child<QLineEdit>(Page(), "txtUnitsPrefix").text().isEmpty());
    EXPECT_TRUE(Child<QLabel>(Page(), "lblExample").text().startsWith("Radios: the first is dialled "));
    const QString number = Child<QLineEdit>(Page(), "txtUnitsNumber").text();
    Type(Page(), "txtUnitsNumber", "1");
    Press(Qt::Key_Return);
    ASSERT_EQ(PageName(), "pageNumbering") << "a fleet that cannot be is refused";
    EXPECT_FALSE(Said().isEmpty());
    Type(Page(), "txtUnitsNumber", number);
    Press(Qt::Key_Return);

    ASSERT_EQ(PageName(), "pageAdministrator") << Said().toStdString();
    Type(Page(), "txtUser", "Ada");
    Type(Page(), "txtPassword", "secret");
    Type(Page(), "txtRepeat", "other");
    Press(Qt::Key_Return);
    ASSERT_EQ(PageName(), "pageAdministrator") << "two passwords";
    Type(Page(), "txtRepeat", "secret");
    Press(Qt::Key_Return);
    ASSERT_EQ(PageName(), "pageSounds");
    wizard.button(QWizard::CustomButton1)->setFocus();
    Press(Qt::Key_Space);
    ASSERT_EQ(PageName(), "pageLast");
    EXPECT_FALSE(QFile::exists(file)) << "nothing is made before the end";
    wizard.button(QWizard::FinishButton)->setFocus();
    Press(Qt::Key_Space);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !wizard.isVisible(); }, 20000)) << Said().toStdString();

    EXPECT_EQ(wizard.result(), QDialog::Accepted);
    EXPECT_EQ(next, QStringList({"Ada", "secret"}));
    EXPECT_EQ(stack.executive.DefaultPort(), "COM2");
    const auto workspace = dao::OpenWorkspace(dao::LocationOf(file), next[0], next[1]);
    EXPECT_TRUE(workspace->Users().IsMember("Ada", "Admins"));
    EXPECT_EQ(FleetPlanTable(workspace->Database()).Read().size(), 2);
}

TEST_F(AssistantTest, EveryStepCanBeSkipped)
{
    const QString port = stack.executive.DefaultPort();
    for (int step = 0; step < 6; ++step) {
        wizard.button(QWizard::CustomButton1)->setFocus();
        Press(Qt::Key_Space);
    }
    ASSERT_EQ(PageName(), "pageLast");
    wizard.button(QWizard::FinishButton)->setFocus();
    Press(Qt::Key_Space);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !wizard.isVisible(); }, 20000));
    EXPECT_FALSE(wizard.HasDatabase());
    EXPECT_EQ(next, QStringList());
    EXPECT_EQ(stack.executive.DefaultPort(), port);
}
