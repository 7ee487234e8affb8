// What callgrind counts for ./bench --profile: each subject in a function of its own, which it is told to
// watch.
//
//     bench_profile SUBJECT [DATABASE]      message, reload, directory or logon

#include "admin/frmAddressManager.h"
#include "mainwindow/RegroupStack.h"
#include "support/FakeMap27Control.h"

#include <QApplication>
#include <cstdio>
#include <cstring>

namespace {

constexpr int Messages = 64;
constexpr int Records = 500;

// The main window on a database that bench_data has made, with a radio that says nothing.
class KeptStack {
public:
    explicit KeptStack(const QString& place)
        : database(dao::LocationOf(place)),
          session(database),
          console({strings, settings, clock, prompt, beeper, session, session, nullptr, folder.path()},
                  std::make_unique<FakeMap27Control>(), m_stage),
          window(console.MainWindowServices())
    {
        session.Logoff();
        window.resize(1000, 640);
        window.show();
        QCoreApplication::processEvents();
    }
    ~KeptStack() { window.CloseUnasked(); }

    void Trigger(const char* name) { window.findChild<QAction*>(QLatin1String(name))->trigger(); }

    QTemporaryDir folder;

private:
    CStringSourceImpl m_source{QStringList{}};
    QString m_stage;

public:
    const IStringSource& strings = m_source.CreateStringSource(QStringLiteral("CKYN"));
    TestDatabase database;
    FakeClock clock;
    Settings settings{folder.filePath(QStringLiteral("bench.ini")), strings};
    TestSession session;
    ScriptedPrompt prompt;
    FakeBeeper beeper;
    Console console;
    winMain window;
};

} // namespace

extern "C" {

[[gnu::noinline]] void ProfiledMessage(RegroupStack& stack)
{
    for (int i = 0; i < Messages; ++i) {
        stack.radio.Perform(sim::StatusAction{stack.AddressOf(2), static_cast<std::uint8_t>(i % 32)});
        stack.Run(20);
    }
}

[[gnu::noinline]] void ProfiledReload(RegroupStack& stack)
{
    QTest::keyClick(&stack.Find<QTreeView>("lvLog"), Qt::Key_F5);
    QCoreApplication::processEvents();
}

[[gnu::noinline]] void ProfiledDirectory(KeptStack& stack)
{
    frmAddressManager directory(
        AdminServices{stack.session, stack.prompt, *stack.console.executive, stack.strings});
    directory.ReloadDir();
    directory.show();
    QCoreApplication::processEvents();
}

[[gnu::noinline]] void ProfiledLogon(KeptStack& stack)
{
    stack.Trigger("miLogOnLogOff");
    QCoreApplication::processEvents();
}
}

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const auto is = [&](const char* subject) { return argc > 1 && std::strcmp(argv[1], subject) == 0; };
    if (is("message") || is("reload")) {
        qputenv("TMPDIR", "/dev/shm");
        RegroupStack stack;
        stack.window->resize(1000, 640);
        if (is("message")) {
            ProfiledMessage(stack);
            return 0;
        }
        for (int i = 0; i < Records; ++i) // what is shown is chosen by the database's own time
            stack.eventLog.AppendLogRecord(QDateTime::currentDateTimeUtc(), EventType::Text,
                                           QStringLiteral("Tunnel is clear, driving on"),
                                           QStringLiteral("Unit20"), QStringLiteral("Dispatch"));
        ProfiledReload(stack);
        return 0;
    }
    if (argc < 3) {
        std::puts("usage: bench_profile message | reload | (directory | logon) DATABASE");
        return 2;
    }
    KeptStack stack(QString::fromLocal8Bit(argv[2]));
    ProfiledLogon(stack);
    if (!stack.window.LoggedOn())
        return 1;
    if (is("directory"))
        ProfiledDirectory(stack);
    return 0;
}
