#include "core/desktop/Prompt.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSourceImpl.h"
#include "core/widgets/Captions.h"
#include "core/widgets/ListHelpers.h"
#include "core/widgets/PlainIconDelegate.h"
#include "core/widgets/ReadableSelection.h"
#include "support/DialogDriver.h"
#include "support/FakeClock.h"
#include "support/QtPrinters.h"

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTreeView>
#include <cstring>

using driver::Child;
using driver::Click;
using driver::WhenShown;

namespace {

class PromptTest : public testing::Test {
protected:
    CStringSourceImpl strings{QStringList{}};
    FakeClock clock;
    Prompt prompt{strings, clock};
};

TEST_F(PromptTest, TheDefaultButtonAgreesToAQuestionAndDeclinesAConfirmation)
{
    const auto enter = [](QWidget& box) { QTest::keyClick(box.focusWidget(), Qt::Key_Return); };
    const auto escape = [](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); };
    const auto yes = [](QWidget& box) { Click(box, "cmdYes"); };
    const auto no = [](QWidget& box) { Click(box, "cmdNo"); };
    const struct {
        std::function<void(QWidget&)> act;
        bool question, confirmation;
    } table[] = {{enter, true, false}, {escape, false, false}, {yes, true, true}, {no, false, false}};
    for (const auto& row : table) {
        {
            const WhenShown box("promptBox", row.act);
            EXPECT_EQ(prompt.AskQuestion("?"), row.question) << &row - table;
        }
        const WhenShown box("promptBox", row.act);
        EXPECT_EQ(prompt.AskConfirmation("?"), row.confirmation) << &row - table;
    }
}

TEST_F(PromptTest, ShowsTextLiterallyUnderTheProgramsName)
{
    prompt.SetAppName("Console");
    const WhenShown box("promptBox", [this](QWidget& widget) {
        auto& message = dynamic_cast<QMessageBox&>(widget);
        EXPECT_EQ(message.windowTitle(), "Console");
        EXPECT_EQ(message.text(), "<b>a</b>\nb");
        EXPECT_EQ(message.textFormat(), Qt::PlainText);
        EXPECT_EQ(message.icon(), QMessageBox::Warning);
        EXPECT_EQ(Child<QPushButton>(message, "cmdOk").text(), "OK");
        Click(message, "cmdOk");
    });
    prompt.ShowWarning("<b>a</b>\r\nb");
}

TEST_F(PromptTest, ABoxWhoseWindowGoesAwayDeclines)
{
    auto* window = new QWidget;
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    const WhenShown box("promptBox", [window](QWidget&) { delete window; });
    EXPECT_FALSE(prompt.AskQuestion("?"));
}

TEST(CaptionsTest, FillsEveryKindOfWidget)
{
    const CStringSourceImpl strings{QStringList()};
    QWidget window;
    window.setProperty("textId", 4074);
    auto* menu = new QMenu(&window);
    menu->setProperty("textId", 4105);
    QAction* action = menu->addAction(QString());
    action->setProperty("textId", 4106);
    auto* field = new QLineEdit(&window);
    field->setProperty("placeholderId", 4097);
    field->setProperty("toolTipId", 4093);
    field->setProperty("accessibleNameId", 4094);
    LoadCaptions(window, strings);
    EXPECT_EQ(window.windowTitle(), "Dispatcher");
    EXPECT_EQ(menu->title(), "S&ystem");
    EXPECT_EQ(action->text(), "&Logon");
    EXPECT_EQ(field->text(), "");
    EXPECT_EQ(field->placeholderText(), "30");
    EXPECT_EQ(field->toolTip(), "Refresh");
    EXPECT_EQ(field->accessibleName(), "Clear Log Display");

    action->setProperty("textId", 999999);
    EXPECT_THROW(LoadCaptions(window, strings), Error);
}

TEST(ListHelpersTest, ColumnsFitContentsOrAlsoHeaders)
{
    QStandardItemModel model(2, 2);
    model.setHorizontalHeaderLabels({"a header that is long", "b"});
    model.setItem(0, 0, new QStandardItem("x"));
    model.setItem(1, 1, new QStandardItem("a text that is far longer than its header"));
    QTreeView view;
    view.setModel(&model);
    view.header()->setStretchLastSection(false);
    view.show();
    AutosizeColumns(view, false);
    const int narrow = view.columnWidth(0);
    const int second = view.columnWidth(1);
    EXPECT_GE(second, view.fontMetrics().horizontalAdvance("a text that is far longer than its header"));
    AutosizeColumns(view, true);
    EXPECT_GE(view.columnWidth(0), view.fontMetrics().horizontalAdvance("a header that is long"));
    EXPECT_LT(narrow, view.columnWidth(0));
    EXPECT_EQ(view.columnWidth(1), second);

    // A row that the view by itself would not look at.
    model.setRowCount(3000);
    const QString wide(60, QChar('W'));
    model.setItem(2500, 0, new QStandardItem(wide));
    AutosizeColumns(view, false);
    EXPECT_GE(view.columnWidth(0), view.sizeHintForIndex(model.index(2500, 0)).width());
}

TEST(ListHelpersTest, APictureOnASelectedLineStandsOnTheSelectionItself)
{
    QPixmap dot(16, 16);
    dot.fill(Qt::transparent);
    {
        QPainter painter(&dot);
        painter.fillRect(6, 6, 4, 4, Qt::red);
    }
    QStandardItemModel model;
    model.appendRow(new QStandardItem(QIcon(dot), "x"));
    QTreeView view;
    view.setItemDelegate(new PlainIconDelegate(&view));
    view.setRootIsDecorated(false);
    view.setModel(&model);
    view.setIconSize({16, 16});
    view.show();
    view.setCurrentIndex(model.index(0, 0));
    const QImage image = view.viewport()->grab().toImage();
    QPoint red;
    for (int x = 0; x < 40 && red.isNull(); ++x)
        for (int y = 0; y < 40 && red.isNull(); ++y)
            if (image.pixelColor(x, y) == Qt::red)
                red = {x, y};
    ASSERT_FALSE(red.isNull()) << "the picture keeps its colour";
    EXPECT_EQ(image.pixelColor(red - QPoint(1, 1)), view.palette().color(QPalette::Base)) << "its rim";
    EXPECT_NE(image.pixelColor(red - QPoint(4, 4)), view.palette().color(QPalette::Base)) << "no tile";
}

TEST(ReadableSelection, LeavesWhatCanBeReadAndMendsWhatCannot)
{
    for (const auto& [back, text] :
         {std::pair(QColor(0x308cc6), QColor(Qt::white)), std::pair(QColor(Qt::yellow), QColor(Qt::white)),
          std::pair(QColor(0x202020), QColor(Qt::black)), std::pair(QColor(0x767676), QColor(0x808080))}) {
        QPalette palette;
        palette.setColor(QPalette::Highlight, back);
        palette.setColor(QPalette::HighlightedText, text);
        const QPalette readable = WithReadableSelection(palette);
        EXPECT_EQ(readable.color(QPalette::Highlight), back);
        EXPECT_GE(Contrast(back, readable.color(QPalette::Inactive, QPalette::HighlightedText)), 4.5);
    }
    QPalette good;
    good.setColor(QPalette::Highlight, QColor(0x10308c));
    good.setColor(QPalette::HighlightedText, QColor(0xffffe0));
    EXPECT_EQ(WithReadableSelection(good).color(QPalette::HighlightedText), QColor(0xffffe0));
}

TEST(ListHelpersTest, TheCurrentItemCountsOnlyWhenSelected)
{
    QStandardItemModel model(3, 2);
    QTreeView view;
    EXPECT_FALSE(HasSelectedItem(view));
    view.setModel(&model);
    SetFullRowSelect(view, true);
    view.setCurrentIndex(model.index(1, 0));
    EXPECT_TRUE(HasSelectedItem(view));
    EXPECT_EQ(GetSelectedItem(view), model.index(1, 0));
    EXPECT_TRUE(view.selectionModel()->isSelected(model.index(1, 1)));
    view.selectionModel()->clearSelection();
    EXPECT_FALSE(HasSelectedItem(view));
    SetFullRowSelect(view, false);
    view.setCurrentIndex(model.index(2, 0));
    EXPECT_FALSE(view.selectionModel()->isSelected(model.index(2, 1)));
}

TEST(ListHelpersTest, FormsAreFoundByTheirExactName)
{
    QWidget form, child(&form);
    form.setObjectName("frmUserManager");
    child.setObjectName("frmChild");
    EXPECT_TRUE(IsFormLoaded("frmUserManager"));
    EXPECT_FALSE(IsFormLoaded("frmusermanager"));
    EXPECT_FALSE(IsFormLoaded("frmChild"));
}

} // namespace
