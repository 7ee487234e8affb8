// Which keys an operator may have, and that they do what the sheet of keys says.

#include "MainWindowStack.h"
#include "core/texts/FormatMessage.h"
#include "mainwindow/keys/KeyBox.h"
#include "mainwindow/keys/KeyTable.h"
#include "mainwindow/keys/frmKeys.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPrinter>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

namespace {

constexpr int Taken = 6644;
constexpr int Typed = 6645;
constexpr int Others = 6646;
constexpr int Stays = 6648;

// The open sheet, worked with its controls.
class Sheet {
public:
    explicit Sheet(MainWindowStack& stack) : m_stack(stack) { stack.Trigger("miKeys"); }

    void Select(const QString& what)
    {
        auto& list = Find<QTableWidget>("lvKeys");
        const auto found = list.findItems(what, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << what.toStdString();
        list.setCurrentItem(found.first());
    }
    // What the row shows of its keys: the one of its own and the second.
    QString Keys()
    {
        const auto& list = Find<QTableWidget>("lvKeys");
        return list.item(list.currentRow(), 2)->text() + "/" + list.item(list.currentRow(), 3)->text();
    }
    // Presses a key in the box, as the keyboard does it.
    QString Set(const QString& key)
    {
        const QKeyCombination pressed = QKeySequence::fromString(key)[0];
        QTest::keyClick(&Find<KeyBox>("txtKey"), pressed.key(), pressed.keyboardModifiers());
        Find<QPushButton>("cmdSetKey").click();
        return Find<QLabel>("lblNote").text();
    }
    template <typename Widget> Widget& Find(const char* name)
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* sheet = qobject_cast<frmKeys*>(window))
                return *sheet->findChild<Widget*>(QLatin1String(name));
        throw std::runtime_error("no sheet of keys");
    }
    QString Text(int id, const QStringList& values) { return FormatMessage(m_stack.strings, id, values); }

private:
    MainWindowStack& m_stack;
};

void Press(MainWindowStack& stack, const char* key)
{
    const QKeyCombination pressed = QKeySequence::fromString(QLatin1String(key))[0];
    QWidget* focus = stack.Window().focusWidget();
    QTest::keyClick(focus != nullptr ? focus : &stack.Window(), pressed.key(), pressed.keyboardModifiers());
}

TEST(Keys, NoKeyOfOursIsTypedOrStandsTwice)
{
    QStringList all;
    for (const KeyRow& row : KeyTable()) {
        if (row.kind == KeyRow::Kind::Own) {
            EXPECT_EQ(FaultOf(row.keys[0]), KeyFault::None) << row.keys.toString().toStdString();
        }
        all.append(row.keys.toString().split(QStringLiteral(", ")));
    }
    EXPECT_EQ(all.removeDuplicates(), 0);
}

struct KeyCase {
    const char* what;
    const char* key;
    int refused; // 0: taken over
    const char* holder = "";
};

const KeyCase KeyCases[] = {
    {"Messages of this shift", "F3", 0},
    {"Messages of this shift", "F3", 0},
    {"Messages of this shift", "Ctrl+Shift+J", 0},
    {"Messages of this shift", "Ctrl+\xC3\x84", 0},
    {"Messages of this shift", "Ctrl+L", Taken, "Log of all consoles"},
    {"Messages of this shift", "Ctrl+F8", Taken, "Prepare favourite 8; Enter sends it"},
    {"Messages of this shift", "F5", Taken, "Read again"},
    {"Messages of this shift", "F6", Taken, "Answer"},
    {"Messages of this shift", "F7", Taken, "Hang up"},
    {"Messages of this shift", "Space", Taken, "Talk while held, on the transmit button"},
    {"Messages of this shift", "Ctrl+Tab", Taken, "Next tab"},
    {"Messages of this shift", "A", Typed},
    {"Messages of this shift", "Shift+1", Typed},
    {"Messages of this shift", "Home", Typed},
    {"Messages of this shift", "Ctrl+V", Others},
    {"Messages of this shift", "Ctrl+Left", Others},
    {"Messages of this shift", "Ctrl+Return", Others},
    {"Messages of this shift", "Ctrl+Space", Others},
    {"Messages of this shift", "Alt+M", Others},
    {"Messages of this shift", "Ctrl+Alt+F1", Others},
    {"Messages of this shift", "F10", Others},
    {"Read again", "F5", Taken, "Read again"},
    {"Read again", "Ctrl+R", 0},
};

TEST(Keys, AKeyThatIsTakenOrTypedIsRefusedInWords)
{
    LoggedOnStack stack;
    Sheet sheet(stack);
    for (const KeyCase& c : KeyCases) {
        SCOPED_TRACE(std::string(c.what) + ": " + c.key);
        sheet.Select(c.what);
        const QString before = sheet.Keys();
        const QString said = sheet.Set(QString::fromUtf8(c.key));
        if (c.refused == 0) {
            EXPECT_EQ(said, "");
            EXPECT_TRUE(sheet.Keys().contains(QString::fromUtf8(c.key))) << sheet.Keys().toStdString();
        } else {
            const QString name = QKeySequence::fromString(c.key).toString(QKeySequence::NativeText);
            EXPECT_EQ(said, sheet.Text(c.refused, {name, c.holder}));
            EXPECT_EQ(sheet.Keys(), before);
        }
    }
    sheet.Select("Answer");
    EXPECT_FALSE(sheet.Find<QPushButton>("cmdSetKey").isEnabled());
    EXPECT_EQ(sheet.Find<QLabel>("lblNote").text(), stack.Text(Stays));
}

TEST(Keys, AreEachOperatorsOwnAndWorkAtOnce)
{
    MainWindowStack stack;
    stack.database.AddOperator(QStringLiteral("oliver"), QStringLiteral("pass"));
    stack.Open();
    stack.LogOn();
    stack.Address().setEditText("Unit20");
    stack.Find<QComboBox>("cmbStatusMessage").setEditText("05");
    stack.Trigger("miKeepFavourite1");
    {
        Sheet sheet(stack);
        sheet.Select("Prepare favourite 1; Enter sends it");
        EXPECT_EQ(sheet.Set("F3"), "");
        sheet.Select("Send; in a list call the party of the line");
        EXPECT_EQ(sheet.Set("Shift+F3"), "");
        sheet.Select("Messages of this shift"); // to a key that has become free
        EXPECT_EQ(sheet.Set("Ctrl+F1"), "");
        sheet.Select("Prepare favourite 1; Enter sends it");
        sheet.Find<QPushButton>("cmdKeyAsDelivered").click();
        EXPECT_EQ(sheet.Find<QLabel>("lblNote").text(),
                  sheet.Text(Taken, {"Ctrl+F1", "Messages of this shift"}));
        sheet.Select("Log of all consoles");
        sheet.Find<QPushButton>("cmdNoKey").click();
        EXPECT_EQ(sheet.Keys(), "/");
    }
    stack.Address().setFocus();
    stack.Address().setEditText("");
    Press(stack, "F3");
    EXPECT_EQ(stack.Address().currentText(), "Unit20");
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    Press(stack, "Shift+F3");
    EXPECT_EQ(stack.control->TakeOperations(), QStringList{"SendStatusMessage 0 2 5"});
    stack.executive.ResetTran();
    EXPECT_EQ(stack.Action("miLogWindow").shortcut(), QKeySequence());
    EXPECT_EQ(stack.Action("miSentMessages").shortcut(), QKeySequence("Ctrl+F1"));

    stack.LogOff();
    {
        Sheet sheet(stack);
        sheet.Select("Log of all consoles");
        EXPECT_EQ(sheet.Keys(), "Ctrl+L/");
        EXPECT_FALSE(sheet.Find<QPushButton>("cmdSetKey").isEnabled()) << "nobody's key to change";
    }
    stack.session.logonName = QStringLiteral("oliver");
    stack.session.logonPassword = QStringLiteral("pass");
    stack.LogOn();
    EXPECT_EQ(stack.Action("miFavourite1").shortcut(), QKeySequence("Ctrl+F1"));
    stack.LogOff();

    // What somebody spoilt by hand gives way, and is told.
    const QString section = "keys " + QLatin1String(TestDatabase::userName).toString().toCaseFolded();
    stack.settings.Write(section, "logwindow", "F11");
    stack.settings.Write(section, "sentmessages", "Space");
    stack.session.logonName = QLatin1String(TestDatabase::userName);
    stack.session.logonPassword = QLatin1String(TestDatabase::password);
    stack.prompt.ExpectWarning(FormatMessage(stack.strings, 6647, {"Log of all consoles", "F11"}) + "\n" +
                               FormatMessage(stack.strings, 6647, {"Messages of this shift", "Space"}));
    stack.LogOn();
    stack.prompt.Finish();
    EXPECT_EQ(stack.Action("miLogWindow").shortcut(), QKeySequence("Ctrl+L"));
    EXPECT_EQ(stack.Action("miSentMessages").shortcut(), QKeySequence("Ctrl+S"));
    EXPECT_EQ(stack.Action("miFavourite1").shortcut(), QKeySequence("F3"));
}

TEST(Keys, TheSheetIsPrintedOrSaysThatItIsNot)
{
    LoggedOnStack stack;
    Sheet sheet(stack);
    const auto& window = dynamic_cast<const frmKeys&>(*sheet.Find<QTableWidget>("lvKeys").window());
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(stack.folder.filePath("keys.pdf"));
    window.PrintOn(printer);
    EXPECT_GT(QFileInfo(stack.folder.filePath("keys.pdf")).size(), 5000);
    printer.setOutputFileName(stack.folder.filePath("no such folder/keys.pdf"));
    EXPECT_THROW(window.PrintOn(printer), std::exception);
}

} // namespace
