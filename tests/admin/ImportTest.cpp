// Import and export of the directory, the status messages and the fleet plan from their windows.

#include "AdminStack.h"

#include "admin/frmAddressManager.h"
#include "admin/frmStatusEditor.h"
#include "core/texts/FormatMessage.h"
#include "numbering/frmFleetPlan.h"
#include "support/Files.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <sys/stat.h>

using driver::Child;
using driver::Click;
using driver::WhenShown;

namespace {

enum class Window { Directory, Status, Fleets };

class ImportTest : public AdminTest {
protected:
    ImportTest()
    {
        for (const auto& [callsign, ident] :
             {std::pair("Unit20", "200200120"), std::pair("Unit21", "200200121")})
            AddRow(
                "address",
                {{"callsign", callsign}, {"IDENT", ident}, {"Type", 1}, {"dynamic", false}, {"Name", "Car"}});
        AddRow("status", {{"status_code", 5}, {"in_desc", "Help"}, {"out_desc", "Go"}, {"emergency", true}});
    }

    void Open(Window kind)
    {
        if (kind == Window::Directory) {
            auto manager = std::make_unique<frmAddressManager>(Services());
            manager->ReloadDir();
            window = std::move(manager);
        } else if (kind == Window::Status) {
            window = std::make_unique<frmStatusEditor>(Services());
        } else {
            window = std::make_unique<frmFleetPlan>(NumberingServices{strings, prompt, session, executive});
        }
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    // The file dialog that `button` opens is given a name.
    std::unique_ptr<WhenShown> Choosing(const QString& path)
    {
        return std::make_unique<WhenShown>("fileDialog", [path](QWidget& dialog) {
            Child<QLineEdit>(dialog, "fileNameEdit").setText(path);
            QTest::keyClick(&Child<QLineEdit>(dialog, "fileNameEdit"), Qt::Key_Return);
        });
    }
    // Works in the preview of a file once it has been read.
    void Import(const QString& path, const std::function<void(QWidget&)>& act)
    {
        const auto picker = Choosing(path);
        const WhenShown preview("frmImport", [&](QWidget& dialog) {
            const QString reading = Filled(7213, {path});
            EXPECT_TRUE(QTest::qWaitFor([&] { return Shown(dialog, "lblImport") != reading; }, 5000));
            act(dialog);
        });
        Click(*window, "cmdImport");
    }
    QString Filled(int id, const QStringList& values) { return FormatMessage(strings, id, values); }
    QString Written(const QByteArray& text) { return WriteFile(folder.filePath("in.csv"), text); }
    QString Exported()
    {
        const QString path = folder.filePath(QStringLiteral("out%1.csv").arg(++exports));
        const auto picker = Choosing(path);
        prompt.whileOpen = [this] { told = true; };
        told = false;
        prompt.ExpectInfo(Filled(7221, {QString::number(linesOut), path}));
        Click(*window, "cmdExport");
        EXPECT_TRUE(QTest::qWaitFor([this] { return told; }, 5000));
        prompt.whileOpen = nullptr;
        return QString::fromUtf8(ReadFile(path));
    }

    QTemporaryDir folder;
    std::unique_ptr<QDialog> window;
    int exports = 0;
    int linesOut = 0;
    bool told = false;
};

const QByteArray DirectoryHead = "type,callsign,ident,name,note,dynamic,position\n";
const QByteArray FleetHead = "type,digits,prefix,base_ident,max_ident,fleet_name,notes\n";

TEST_F(ImportTest, APreviewSaysWhatTheImportThenDoes)
{
    const struct {
        Window window;
        QByteArray file;
        const char* choice; // ticked beforehand
        QStringList shown;  // refused lines first
        QByteArray counts;
        bool importable;
        int linesOut;
        QByteArray after; // as exported
    } cases[] = {
        {Window::Directory,
         DirectoryHead + "individual,Unit20,200200120,Car,,no,\nindividual,unit21,200200122,Car,,no,\n"
                         "individual,9A,200200130,Car,,no,\ntalkgroup,Night,200550091,,,yes,16\n",
         "",
         {"4|9A|refused|Callsign must begin with a letter and contain only digits or letters or underscores "
          "( _ ), it can't be longer than 14 characters.",
          "2|Unit20|unchanged|", "3|unit21|changed|", "5|Night|added|"},
         "1 added, 1 changed, 1 unchanged, 0 removed, 1 refused",
         false,
         2,
         DirectoryHead + "individual,Unit20,200200120,Car,,no,\nindividual,Unit21,200200121,Car,,no,\n"},
        {Window::Directory,
         DirectoryHead + "individual,Unit20,200200121,Car,,no,\nindividual,Unit21,200200120,Car,,no,\n"
                         "individual,Third,200200121,Car,,no,\n",
         "chkLeaveOut",
         {"4|Third|refused|the ident \"200200121\" belongs to another entry", "2|Unit20|changed|",
          "3|Unit21|changed|"},
         "0 added, 2 changed, 0 unchanged, 0 removed, 1 refused",
         true,
         2,
         DirectoryHead + "individual,Unit20,200200121,Car,,no,\nindividual,Unit21,200200120,Car,,no,\n"},
        {Window::Status,
         "code,in,out\n5,Help!,Go\n6,Here,\n",
         "",
         {"2|5|changed|", "3|6|added|"},
         "1 added, 1 changed, 0 unchanged, 0 removed, 0 refused",
         true,
         2,
         "code,in,out,emergency\n5,Help!,Go,yes\n6,Here,,no\n"},
        {Window::Status,
         "emergency,code,in,out\nno,5,Help!,Go\nmaybe,6,Here,\nyes,6,Here,\n",
         "chkLeaveOut",
         {"3|6|refused|emergency is \"maybe\", not yes or no", "2|5|changed|", "4|6|changed|"},
         "0 added, 2 changed, 0 unchanged, 0 removed, 1 refused",
         true,
         2,
         "code,in,out,emergency\n5,Help!,Go,no\n6,Here,,yes\n"},
        {Window::Fleets,
         FleetHead + "units,3,1,1020,1089,Harbour,\nunits,2,0,70,79,Other,\n",
         "",
         {"3|Other|refused|Fleet 200/2035 overlaps fleet 200/2001.", "2|Harbour|added|"},
         "1 added, 0 changed, 0 unchanged, 0 removed, 1 refused",
         false,
         2,
         ""},
        {Window::Fleets,
         FleetHead + "units,3,1,1020,1089,Harbour,\ngroups,2,0,7000,7009,groups,new\n",
         "chkImportOption",
         {"2|Harbour|added|", "3|groups|changed|", "|units|removed|"},
         "1 added, 1 changed, 0 unchanged, 1 removed, 0 refused",
         true,
         2,
         FleetHead + "groups,2,0,7000,7009,groups,new\nunits,3,1,1020,1089,Harbour,\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.file.toStdString());
        Open(row.window);
        Import(Written(row.file), [&](QWidget& preview) {
            if (*row.choice)
                Click(preview, row.choice);
            EXPECT_EQ(Lines(preview, "lvImport"), row.shown);
            EXPECT_EQ(Shown(preview, "lblImport"), QString::fromUtf8(row.counts));
            EXPECT_EQ(Child<QPushButton>(preview, "cmdImportNow").isEnabled(), row.importable);
            Click(preview, row.importable ? "cmdImportNow" : "cmdCancelImport");
            EXPECT_FALSE(preview.isVisible());
        });
        linesOut = row.linesOut;
        const QString after = Exported();
        if (!row.after.isEmpty())
            EXPECT_EQ(after, QString::fromUtf8(row.after));
        else
            EXPECT_FALSE(after.contains("Harbour")) << after.toStdString();
    }
}

TEST_F(ImportTest, NothingIsStoredThatWasNotShown)
{
    Open(Window::Directory);
    const QString path = Written(DirectoryHead + "individual,Third,200200130,Car,,no,\n");
    const QStringList before = Rows("address", {"callsign", "IDENT"});
    Import(path, [&](QWidget& preview) {
        // Another console is writing, and then has taken the number.
        {
            const auto other = database.Open();
            other->BeginTrans();
            // A server is named without the role.
            prompt.ExpectWarning(Text(5107).replace("#01", session.DatabaseFile().remove("postgres@")));
            Click(preview, "cmdImportNow");
            prompt.Finish();
        }
        AddRow("address", {{"callsign", "Taken"},
                           {"IDENT", "200200130"},
                           {"Type", 1},
                           {"dynamic", false},
                           {"Name", "Car"}});
        prompt.ExpectWarning(Text(7217));
        Click(preview, "cmdImportNow");
        EXPECT_TRUE(preview.isVisible());
        EXPECT_EQ(Lines(preview, "lvImport"),
                  QStringList("2|Third|refused|the ident \"200200130\" belongs to another entry"));
        Click(preview, "cmdCancelImport");
    });
    EXPECT_EQ(Rows("address", {"callsign", "IDENT"}), before + QStringList("Taken|200200130"));

    // A share that hangs: the window goes on, and can be left.
    const QString pipe = folder.filePath("pipe.csv");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const auto picker = Choosing(pipe);
    const WhenShown preview("frmImport", [&](QWidget& dialog) {
        EXPECT_EQ(Shown(dialog, "lblImport"), Filled(7213, {pipe}));
        EXPECT_FALSE(Child<QPushButton>(dialog, "cmdImportNow").isEnabled());
        Click(dialog, "cmdCancelImport");
    });
    Click(*window, "cmdImport");
    EXPECT_TRUE(window->isVisible());
}

} // namespace
