#include "AdminStack.h"

#include "admin/frmAbout.h"

#include <QFile>
#include <QPushButton>

using driver::Child;
using driver::Click;

TEST_F(AdminTest, AboutBoxStartsTheSystemInformationThatIsInstalled)
{
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", folder.path().toLocal8Bit());
    {
        frmAbout window(prompt, strings);
        EXPECT_EQ(window.windowTitle(), "About VeltorKyn");
        EXPECT_FALSE(Child<QPushButton>(window, "cmdSysInfo").isEnabled());
        EXPECT_EQ(Child<QPushButton>(window, "cmdSysInfo").toolTip(), Text(2104));
    }
    QFile tool(folder.filePath("hardinfo"));
    ASSERT_TRUE(tool.open(QIODevice::WriteOnly));
    tool.write("#!/bin/sh\n: > started\n");
    tool.close();
    tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    frmAbout window(prompt, strings);
    window.show();
    Click(window, "cmdSysInfo");
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(folder.filePath("started")); }));
    QFile::remove(tool.fileName());
    prompt.ExpectWarning(Text(2104)); // gone since the box was opened
    Click(window, "cmdSysInfo");
    QDir::setCurrent(before);
    qputenv("PATH", path);
    Click(window, "cmdOK");
    EXPECT_FALSE(window.isVisible());
}
