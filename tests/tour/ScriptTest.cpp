// Scripts of the tour as text: what is wrong with them, and what becomes of a small one on a window.

#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "support/Table.h"
#include "tour/TourHand.h"
#include "tour/TourLooks.h"
#include "tour/TourRunner.h"
#include "tour/TourScript.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

constexpr int Patience = 5000; // ms

struct Texts : IStringSource {
    QString LoadString(int id) const override
    {
        if (id != 1)
            throw Error(ErrorCode::General, QStringLiteral("no text %1").arg(id));
        return QStringLiteral("Fleet #01 overlaps #02");
    }
};

class Script : public testing::Test {
protected:
    std::vector<TourStep> Read(const QByteArray& text)
    {
        QFile file(folder.filePath(QStringLiteral("a.tour")));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("no script");
        file.close();
        std::vector<TourWord> words = TourHandWords();
        const std::vector<TourWord> looks = TourLookWords();
        words.insert(words.end(), looks.begin(), looks.end());
        return TourScript(words, TourTexts(texts, {{QStringLiteral("port"), QStringLiteral("{1}")}}))
            .Read(file.fileName());
    }

    Texts texts;
    QTemporaryDir folder;
};

TEST_F(Script, WrongLinesAreToldWithFileAndLine)
{
    for (const TableRow& row : ReadTable("tour.tsv", "Wrong lines", 17)) {
        try {
            Read(QByteArray::fromStdString(row.at(0)));
            ADD_FAILURE() << row.at(0);
        } catch (const Error& failure) {
            EXPECT_TRUE(failure.Description().contains(QString::fromStdString(row.at(1))))
                << failure.Description().toStdString();
        }
    }
}

// Each script meets the same window anew; what it says of it is true or false.
TEST_F(Script, StepsAreDoneAndSeenOrNot)
{
    for (const TableRow& row : ReadTable("tour.tsv", "Steps", 20)) {
        const QByteArray lines = QByteArray::fromStdString(row.at(0));
        const QByteArray outcome = QByteArray::fromStdString(row.at(1));
        QWidget window;
        QLineEdit field(QStringLiteral("Fleet A overlaps {1}"), &window);
        QLineEdit off(&window);
        QCheckBox check(QStringLiteral("off"), &window);
        QListView list(&window);
        QStringListModel model({QStringLiteral("Unit 1"), QStringLiteral("Unit 2")});
        const std::pair<QWidget*, const char*> controls[] = {
            {&field, "field"}, {&off, "off"}, {&check, "check"}, {&list, "list"}};
        int top = 0;
        for (const auto& [control, name] : controls) {
            control->setObjectName(QLatin1String(name));
            control->setGeometry(0, top, 200, 80);
            top += 80;
        }
        off.setEnabled(false);
        list.setModel(&model);
        QObject::connect(&check, &QCheckBox::toggled, [&] { check.setText(QStringLiteral("on")); });
        QObject::connect(&list, &QListView::clicked,
                         [&](const QModelIndex& item) { field.setText(item.data().toString()); });
        window.resize(200, 400);
        window.show();

        TourRunner runner(folder.path(), Read("text overlap 1\nstep a: it\n" + lines + " within 0 s"));
        QSignalSpy finished(&runner, &TourRunner::Finished);
        runner.Start();
        ASSERT_TRUE(finished.count() || finished.wait(Patience));
        QFile log(folder.filePath(QStringLiteral("tour.log")));
        ASSERT_TRUE(log.open(QIODevice::ReadOnly));
        const QByteArray written = log.readAll();
        EXPECT_TRUE(written.contains(outcome)) << lines.toStdString() << ": " << written.toStdString();
        EXPECT_EQ(runner.Failed(), !written.endsWith(": ok\n"));
    }
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("01-a.png")}).size(), 1);
}

} // namespace
