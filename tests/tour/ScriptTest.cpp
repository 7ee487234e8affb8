// Scripts of the tour as text: what is wrong with them, and what becomes of a small one on a window.

#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
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
    const std::pair<QByteArray, const char*> cases[] = {
        {"", "a.tour: there is no step in it"},
        {"see x", "a.tour:1: there is no step before it"},
        {"step a b", "a.tour:1: a step begins with"},
        {"step a: b\nclik x\nsee x", "a.tour:2: \"clik\" is not a word of the tour"},
        {"step a: b\nput x into y", "a.tour:2: not understood; there is: put TEXT into NAME"},
        {"step a: b\nput \"x into y", "a.tour:2: not understood"},
        {"step a: b\nnot click x", "a.tour:2: not understood; there is: click PLACE"},
        {"step a: b\nclick x within 5 s", "a.tour:2: not understood; there is: click PLACE"},
        {"step a: b\npress ctrl+nokey in x", "a.tour:2: ctrl+nokey is not a key"},
        {"step a: b\nx holds \"{nobody}\"", "a.tour:2: {nobody} is not a known name"},
        {"step a: b\nx holds \"{port\"", "a.tour:2: a } is missing"},
        {"step a: b\nclick x\n# nothing\nstep b: c",
         "a.tour:4: the step a before it does not end with what is seen"},
        {"step a: b\nsee x\nstep a: c", "a.tour:3: there is another step a"},
        {"text one 1\ntext one 1", "a.tour:2: the name one is taken"},
        {"text two 2", "a.tour:1: no text 2"},
        {"include a.tour", "includes itself"},
        {"step a: b\nsee x\ninclude none.tour", "none.tour cannot be read"},
    };
    for (const auto& [text, reason] : cases) {
        try {
            Read(text);
            ADD_FAILURE() << text.toStdString();
        } catch (const Error& failure) {
            EXPECT_TRUE(failure.Description().contains(QLatin1String(reason)))
                << failure.Description().toStdString();
        }
    }
}

// Each script meets the same window anew; what it says of it is true or false.
TEST_F(Script, StepsAreDoneAndSeenOrNot)
{
    const std::pair<QByteArray, const char*> cases[] = {
        {"see field", ": ok"},
        {"see nobody", "saw nobody not shown (a.tour:3)"},
        {"not see field", "saw field (a.tour:3)"},
        {"field holds \"Fleet*overlaps*\"", ": ok"},
        {"field holds \"{overlap | A}\"", ": ok"},
        {"field holds \"{overlap | B}\"", "saw \"Fleet A overlaps {1}\""},
        {"field holds \"{overlap | A | {port}}\"", ": ok"},
        {"not field holds \"Fleet\"", ": ok"},
        {"field is not disabled", ": ok"},
        {"field is disabled", "saw field enabled"},
        {"put \"this is not {port}\" into field\nfield holds \"this is not {port}\"", ": ok"},
        {"click off\nsee field", "saw off is disabled (a.tour:3)"},
        {"click check\ncheck holds \"on\"", ": ok"},
        {"see list/\"Unit 2\"", ": ok"},
        {"see list/*2", ": ok"},
        {"not see list/Unit", "saw list/Unit"},
        {"not see none/Unit", "saw no list none"},
        {"click list/#1\nfield holds \"Unit 2\"", ": ok"},
        {"click list/Unit9\nsee field", "saw no item list/Unit9"},
        {"rename list/#0 to \"Gate\"\nsee list/Gate", ": ok"},
    };
    for (const auto& [lines, outcome] : cases) {
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
