#include "AdminStack.h"

#include "admin/HelpGuide.h"
#include "admin/frmHelp.h"

#include <QDialog>
#include <QDir>
#include <QImage>
#include <QRegularExpression>
#include <QTextBrowser>

using driver::Child;
using driver::Click;

TEST_F(AdminTest, TheGuideIsWholeAndTurnsItsPages)
{
    const HelpGuide guide(QStringLiteral(HELP_FILE), strings);
    EXPECT_EQ(guide.ContentsPage(), "contents");
    const auto targets = [](const QString& text, const char* pattern) {
        QStringList found;
        for (auto match = QRegularExpression(QLatin1String(pattern)).globalMatch(text); match.hasNext();)
            found.append(match.next().captured(1));
        return found;
    };
    QStringList reached = targets(guide.Page("contents"), R"(\]\(page:([^)]+)\))");
    for (const QString& page : guide.Pages()) {
        for (const QString& target : targets(guide.Page(page), R"(\]\(page:([^)]+)\))"))
            EXPECT_TRUE(guide.Contains(target)) << target.toStdString() << " of " << page.toStdString();
        for (const QString& picture : targets(guide.Page(page), R"(!\[[^]]*\]\(([^)]+)\))"))
            EXPECT_FALSE(QImage(QDir(guide.PictureFolder()).filePath(picture)).isNull())
                << picture.toStdString();
        EXPECT_TRUE(reached.contains(page) || page == guide.ContentsPage()) << page.toStdString();
    }
    for (const char* window :
         {"winMain", "winMain/scada", "frmSettings", "frmAddressEditor", "frmUserManager", "frmFleetPlan"})
        EXPECT_TRUE(guide.Contains(HelpPageFor(window))) << window;

    frmHelp window(guide, strings);
    window.ShowPage("accounts");
    EXPECT_EQ(window.Page(), "accounts");
    window.ShowPage("no such page");
    EXPECT_EQ(window.Page(), "contents");
    Q_EMIT Child<QTextBrowser>(window, "txtHelp").anchorClicked(QUrl("page:scada"));
    EXPECT_TRUE(Child<QTextBrowser>(window, "txtHelp").toPlainText().startsWith("SCADA"));
    Click(window, "cmdBack");
    Click(window, "cmdBack");
    EXPECT_EQ(window.Page(), "accounts");
    EXPECT_FALSE(Child<QWidget>(window, "cmdBack").isEnabled());
    Click(window, "cmdForward");
    EXPECT_EQ(window.Page(), "contents");
    window.close();
    QDialog logon; // blocks the whole program
    logon.setModal(true);
    logon.show();
    window.ShowPage("logon");
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    Click(window, "cmdContents");
    EXPECT_EQ(window.Page(), "contents");
    EXPECT_EQ(QApplication::activeModalWidget(), &window);
    window.close();
    logon.close();
    EXPECT_THROW(HelpGuide(folder.filePath("none.hlp"), strings), Error);
}
