// Which commands the window offers to whom.

#include "MainWindowStack.h"
#include "mainwindow/bars/CommandBars.h"
#include "mainwindow/send/QuickMenus.h"

#include <QAbstractButton>
#include <QAction>
#include <QMenu>

namespace {

enum class Who { Nobody, Operator, Administrator };

struct Expected {
    const char* control;
    bool enabled[3]; // nobody, operator, administrator
    bool visible[3];
};

constexpr bool T = true;
constexpr bool F = false;

const Expected Table[] = {
    {"mbSystem", {T, T, T}, {T, T, T}},
    {"mbAdmin", {F, F, T}, {F, F, T}},
    {"mbRadio", {F, T, T}, {F, T, T}},
    {"mbMessaging", {F, T, T}, {F, T, T}},
    {"mbDynReg", {F, T, T}, {F, T, T}},
    {"mbView", {T, T, T}, {T, T, T}},
    {"mbHelp", {T, T, T}, {T, T, T}},
    {"miLogOnLogOff", {T, T, T}, {T, T, T}},
    {"miSettings", {T, T, T}, {T, T, T}},
    {"miPassword", {F, T, T}, {T, T, T}},
    {"miLogDataView", {F, T, T}, {F, T, T}},
    {"miLogWindow", {F, T, T}, {T, T, T}},
    {"miShiftReport", {F, T, T}, {T, T, T}},
    {"miWhoIsWhere", {F, T, T}, {T, T, T}},
    {"miRegroupHistory", {F, T, T}, {F, T, T}},
    {"miOpCon", {F, T, T}, {F, T, T}},
    {"miSendCall", {F, T, T}, {F, T, T}},
    {"tbMain_addressdir", {F, F, T}, {F, F, T}},
    {"tbMain_disconnect", {F, T, T}, {T, T, T}},
    {"tbMain_session", {T, T, T}, {T, T, T}},
    {"tbMain_fullscreen", {T, T, T}, {T, T, T}},
    {"tbRefreshLog_refresh", {F, T, T}, {T, T, T}},
    {"tbRefreshLog_clearlog", {T, T, T}, {T, T, T}},
    {"cmdSend", {F, T, T}, {T, T, T}},
    {"tbMain_regroup", {F, F, F}, {T, T, T}}, // nothing is selected
    {"tbMain_refresh", {F, T, T}, {T, T, T}},
    {"miDefDynamic", {F, T, T}, {F, T, T}},
    {"cmdSearchAddress", {F, T, T}, {T, T, T}},
    {"miAbout", {T, T, T}, {T, T, T}},
    {"miDiagnostics", {T, T, T}, {T, T, T}},
};

void ExpectStates(MainWindowStack& stack, Who who)
{
    const auto role = static_cast<std::size_t>(who);
    for (const Expected& expected : Table) {
        SCOPED_TRACE(expected.control);
        QObject* found = stack.Window().findChild<QObject*>(QLatin1String(expected.control));
        ASSERT_NE(found, nullptr);
        if (const auto* menu = qobject_cast<QMenu*>(found)) {
            EXPECT_EQ(menu->menuAction()->isEnabled(), expected.enabled[role]);
            EXPECT_EQ(menu->menuAction()->isVisible(), expected.visible[role]);
        } else if (const auto* action = qobject_cast<QAction*>(found)) {
            const auto* within = qobject_cast<QMenu*>(action->parent());
            EXPECT_EQ(action->isEnabled() && within->menuAction()->isEnabled(), expected.enabled[role]);
            EXPECT_EQ(action->isVisible() && within->menuAction()->isVisible(), expected.visible[role]);
        } else {
            const auto& button = dynamic_cast<QAbstractButton&>(*found);
            EXPECT_EQ(button.isEnabled(), expected.enabled[role]);
            EXPECT_EQ(button.isVisible(), expected.visible[role]);
        }
    }
}

TEST(Commands, FollowTheOperatorsRights)
{
    MainWindowStack stack;
    stack.database.AddOperator(QStringLiteral("oliver"), QStringLiteral("pass"));
    stack.Open();
    ExpectStates(stack, Who::Nobody);

    stack.session.logonName = QStringLiteral("oliver");
    stack.session.logonPassword = QStringLiteral("pass");
    stack.LogOn();
    ExpectStates(stack, Who::Operator);
    stack.LogOff();
    ExpectStates(stack, Who::Nobody);

    stack.session.logonName = QLatin1String(TestDatabase::userName);
    stack.session.logonPassword = QLatin1String(TestDatabase::password);
    stack.LogOn();
    ExpectStates(stack, Who::Administrator);
    stack.LogOff();
    ExpectStates(stack, Who::Nobody);
}

TEST(Commands, EveryMenuItemThatIsEnabledDoesSomething)
{
    LoggedOnStack stack;
    const auto* bars = stack.Window().findChild<CommandBars*>();
    const auto* quick = stack.Window().findChild<QuickMenus*>();
    ASSERT_TRUE(bars && quick);
    int enabled = 0;
    for (QAction* action : stack.Window().findChildren<QAction*>()) {
        if (action->isEnabled() && action->isVisible() && !action->isSeparator() &&
            action->menu() == nullptr) {
            ++enabled;
            EXPECT_NE(action->objectName(), QString()) << action->text().toStdString();
            EXPECT_TRUE(QObject::disconnect(action, &QAction::triggered, bars, nullptr) ||
                        QObject::disconnect(action, &QAction::triggered, quick, nullptr))
                << action->objectName().toStdString();
        }
    }
    EXPECT_GT(enabled, 12);
}

TEST(Commands, AccessKeysAreUniqueWithinEachMenu)
{
    LoggedOnStack stack;
    for (const QMenu* menu : stack.Window().findChildren<QMenu*>()) {
        QString keys;
        for (const QAction* action : menu->actions()) {
            const qsizetype mark = action->text().indexOf(QLatin1Char('&'));
            if (mark >= 0) {
                const QChar key = action->text()[mark + 1].toLower();
                EXPECT_FALSE(keys.contains(key))
                    << menu->objectName().toStdString() << " " << action->text().toStdString();
                keys += key;
            }
        }
    }
}

} // namespace
