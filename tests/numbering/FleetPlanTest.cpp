// The fleet plan's rules and its editor, on the real database and with the simulated radio.

#include "numbering/frmFleetPlan.h"
#include "radio/RadioStack.h"
#include "support/DialogDriver.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QRadioButton>

namespace {

TEST(FleetRules, Fields)
{
    struct Case {
        FleetField kind;
        const char* text;
        std::optional<int> value;
    };
    const Case cases[] = {
        {FleetField::Prefix1327, "0", 0},        {FleetField::Prefix1327, "127", 127},
        {FleetField::Prefix1327, "128", {}},     {FleetField::Prefix1327, "0001", {}},
        {FleetField::Prefix1327, "", {}},        {FleetField::BaseIdent, "2", 2},
        {FleetField::BaseIdent, "8100", 8100},   {FleetField::BaseIdent, "8102", {}},
        {FleetField::BaseIdent, "3", {}},        {FleetField::MaxIdent, "71", 71},
        {FleetField::MaxIdent, "70", {}},        {FleetField::Prefix1343, "200", 200},
        {FleetField::Prefix1343, "327", 327},    {FleetField::Prefix1343, "199", {}},
        {FleetField::Prefix1343, "328", {}},     {FleetField::FleetNumber, "2001", 2001},
        {FleetField::FleetNumber, "6050", 6050}, {FleetField::FleetNumber, "02001", {}},
        {FleetField::FleetNumber, "6051", {}},   {FleetField::FleetSize, "2", 2},
        {FleetField::FleetSize, "700", 700},     {FleetField::FleetSize, "702", {}},
        {FleetField::FleetSize, "71", {}},       {FleetField::FleetSize, "7 ", {}},
        {FleetField::FleetSize, "-2", {}},       {FleetField::FleetSize, "1e2", {}},
    };
    for (const Case& test : cases)
        EXPECT_EQ(ValidateFleetField(test.kind, QString::fromLatin1(test.text)), test.value)
            << static_cast<int>(test.kind) << ' ' << test.text;
}

class FleetPlanWindow : public testing::Test {
protected:
    FleetPlanWindow()
    {
        stack.LogOn();
        Open();
    }

    void Open()
    {
        window = std::make_unique<frmFleetPlan>(
            NumberingServices{stack.strings, stack.prompt, stack.session, stack.executive});
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    void Type(const char* name, const char* text) { driver::Type(*window, name, text); }
    void Click(const char* name) { driver::Click(*window, name); }
    QString Shown(const char* name) { return driver::Child<QLineEdit>(*window, name).text(); }
    QComboBox& Digits() { return driver::Child<QComboBox>(*window, "cmbDigits"); }
    QString Focus() { return window->focusWidget()->objectName(); }

    void Select(int row)
    {
        auto& list = driver::Child<QListView>(*window, "lstPlan");
        list.setCurrentIndex(list.model()->index(row, 0));
    }
    void Enter(const char* name, const char* type, const char* prefix, const char* number, const char* size)
    {
        Click("cmdNew");
        Type("txtFleetName", name);
        Click(type);
        Type("txtPrefix1343", prefix);
        Type("txtFleetNum", number);
        Type("txtFleetSize", size);
    }
    // "name type digits prefix base max notes" of every row, in the plan's order.
    QStringList Rows()
    {
        QStringList rows;
        const auto records = stack.session.Database().OpenSnapshot(
            QStringLiteral("select * from fleet order by prefix, base_ident"));
        for (; !records->Eof(); records->MoveNext()) {
            QStringList fields;
            for (const char* field :
                 {"fleet_name", "fleet_type", "digits", "prefix", "base_ident", "max_ident"})
                fields.append(records->Field(QString::fromLatin1(field)).toString());
            fields.append(records->Field(QStringLiteral("notes")).isValid() ? "notes" : "null");
            rows.append(fields.join(QLatin1Char(' ')));
        }
        return rows;
    }

    RadioStack stack;
    std::unique_ptr<frmFleetPlan> window;
};

TEST_F(FleetPlanWindow, KeepsADerivedFieldTrueWhateverIsTypedLast)
{
    Enter("Harbour", "optInd", "201", "2510", "72");
    EXPECT_EQ(Shown("txtPrefix1327"), "1");
    EXPECT_EQ(Shown("txtBaseIdent"), "1020");
    EXPECT_EQ(Shown("txtMaxIdent"), "1091");
    EXPECT_EQ(Digits().currentIndex(), 1) << "72 units need three digits";
    Type("txtFleetNum", "6050");
    EXPECT_EQ(Shown("txtBaseIdent"), "8100");
    EXPECT_EQ(Shown("txtMaxIdent"), "8171") << "follows the number, too";
    Type("txtFleetNum", "605");
    EXPECT_EQ(Shown("txtBaseIdent") + Shown("txtMaxIdent"), "");
    Type("txtPrefix1343", "328");
    EXPECT_EQ(Shown("txtPrefix1327"), "");

    Enter("Harbour", "optInd", "201", "2510", "70");
    EXPECT_EQ(Digits().currentIndex(), -1) << "70 units keep what was chosen";
    Click("optGrp");
    EXPECT_EQ(Digits().currentIndex(), 1) << "70 groups do not";
    Digits().setCurrentIndex(0);
    Type("txtPrefix1343", "202");
    Click("optInd");
    Click("optGrp");
    EXPECT_EQ(Digits().currentIndex(), 0) << "neither prefix nor type change what was chosen";
    Type("txtFleetSize", "72");
    EXPECT_EQ(Digits().currentIndex(), 1);
}

TEST_F(FleetPlanWindow, RefusesWithOneSentenceAndTheCursorInTheField)
{
    struct Case {
        const char* name;
        const char* type;
        const char* prefix;
        const char* number;
        const char* size;
        int digits;
        QString text;
        const char* focus;
    };
    const Case cases[] = {
        {" ", "", "", "", "", -1, stack.Text(2171), "txtFleetName"},
        {"A", "", "200", "2100", "10", 0, stack.Text(2172), "optInd"},
        {"A", "optInd", "199", "2100", "10", 0, stack.Text(2173), "txtPrefix1343"},
        {"A", "optInd", "200", "2000", "10", 0, stack.Text(2174), "txtFleetNum"},
        {"A", "optInd", "200", "2100", "702", 0, stack.Text(2175), "txtFleetSize"},
        {"A", "optInd", "200", "2100", "11", 0, stack.Text(2175), "txtFleetSize"},
        {"A", "optGrp", "200", "5600", "102", 0, stack.Text(2175), "txtFleetSize"},
        {"A", "optInd", "200", "2100", "10", -1, stack.Text(2176), "cmbDigits"},
        {"units", "optInd", "200", "2100", "10", 0,
         "There is already a fleet named units. Please enter another name.", "txtFleetName"},
        {"A", "optInd", "200", "6049", "4", 0, "Fleet 200/6049 would end above ident 8100.", "txtFleetSize"},
        {"A", "optGrp", "200", "2035", "10", 0, "Fleet 200/2035 overlaps fleet 200/2001.", "txtFleetNum"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text.toStdString());
        Click("cmdNew");
        Type("txtFleetName", test.name);
        if (*test.type != '\0')
            Click(test.type);
        Type("txtPrefix1343", test.prefix);
        Type("txtFleetNum", test.number);
        Type("txtFleetSize", test.size);
        Digits().setCurrentIndex(test.digits);
        stack.prompt.ExpectWarning(test.text);
        Click("cmdSave");
        stack.prompt.Finish();
        EXPECT_EQ(Focus(), test.focus);
        EXPECT_EQ(Rows(), QStringList{"units 1 2 0 2 71 null"}) << "nothing is written";
    }
}

TEST_F(FleetPlanWindow, AddsChangesAndDeletesAndTheNextNumberUsesThePlan)
{
    EXPECT_EQ(stack.executive.MakeFullAddress("201251032"), "/0011032") << "not in the plan yet";
    Enter("Harbour", "optInd", "201", "2510", "70");
    Digits().setCurrentIndex(0);
    driver::Type(*window, "txtNotes", "since May");
    Click("cmdSave");
    EXPECT_EQ(Rows(), (QStringList{"units 1 2 0 2 71 null", "Harbour 1 2 1 1020 1089 notes"}));
    EXPECT_EQ(Shown("txtFleetSize"), "70") << "the saved entry is selected and shown";
    Click("cmdClose");
    EXPECT_EQ(stack.executive.MakeFullAddress("201251032"), "201251032");

    Open();
    Select(1);
    Type("txtFleetName", "Port");
    Type("txtFleetSize", "12");
    Click("cmdUndo");
    EXPECT_EQ(Shown("txtFleetName") + Shown("txtFleetSize"), "Harbour70");
    Type("txtFleetName", "Port");
    Type("txtFleetSize", "12");
    Click("cmdSave");
    EXPECT_EQ(Rows().last(), "Port 1 2 1 1020 1031 notes");
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    EXPECT_THROW(stack.executive.MakeFullAddress("201251032"), Error) << "unit 32 is none of twelve";
    EXPECT_EQ(stack.executive.MakeFullAddress("/0011032"), "/0011032") << "still reachable";

    Open();
    Select(1);
    stack.prompt.ExpectConfirmation(stack.Text(2170), true);
    Click("cmdDelete");
    Select(0);
    stack.prompt.ExpectConfirmation(stack.Text(2170), true);
    Click("cmdDelete");
    EXPECT_EQ(Rows(), QStringList());
    EXPECT_FALSE(driver::Child<QWidget>(*window, "cmdDelete").isEnabled());
    stack.prompt.ExpectWarning(stack.Text(204));
    Click("cmdClose");
}

TEST_F(FleetPlanWindow, TakesTheFleetsThatTheRadioReports)
{
    Select(0);
    Click("cmdAskUnitNumbering");
    ASSERT_TRUE(stack.RunUntil([this] { return !Shown("txtFleetName").isEmpty(); }));
    EXPECT_EQ(Shown("txtFleetName"), "Units2002001");
    EXPECT_EQ(Shown("txtPrefix1343") + Shown("txtFleetNum") + Shown("txtFleetSize"), "200200170");
    EXPECT_EQ(Digits().currentIndex(), 0);
    stack.prompt.ExpectWarning("Fleet 200/2001 overlaps fleet 200/2001.");
    Click("cmdSave");

    stack.prompt.ExpectInfo(stack.Text(2179));
    Click("cmdAskGrpNumbering");
    ASSERT_TRUE(stack.RunUntil([this] { return Shown("txtFleetName") == "Groups2005500"; }));
    stack.Run(100);
    EXPECT_EQ(Focus(), "txtFleetSize");
    EXPECT_EQ(Shown("txtFleetSize") + Shown("txtMaxIdent"), "");
    Type("txtFleetSize", "10");
    Click("cmdSave");
    EXPECT_EQ(Rows().last(), "Groups2005500 2 2 0 7000 7009 null");

    Click("cmdAskUnitNumbering");
    Select(0);
    stack.Run(2000);
    EXPECT_EQ(Shown("txtFleetName"), "units") << "a late answer does not overwrite what was chosen since";
    stack.radio.Unplug();
    stack.Run(100);
    stack.prompt.ExpectWarning(stack.Text(5320));
    Click("cmdAskGrpNumbering");
}

TEST_F(FleetPlanWindow, AFailureOfTheDatabaseIsToldAndKeepsWhatWasTyped)
{
    Select(0);
    const auto otherWorkstation = stack.database.Open();
    FleetPlanTable(otherWorkstation->Database()).Delete("units");
    Type("txtFleetName", "City");
    stack.prompt.ExpectWarning(stack.Text(5135));
    Click("cmdSave");
    EXPECT_EQ(Shown("txtFleetName"), "City");
    EXPECT_EQ(Rows(), QStringList());
}

} // namespace
