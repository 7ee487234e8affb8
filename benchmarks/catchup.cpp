// How long a console takes to store the records that have waited in its spool file. Arguments: records
// (10,000). VELTORKYN_TEST_ENGINE=postgresql: on a server.

#include "core/eventlog/EventLog.h"
#include "core/texts/StringSourceImpl.h"
#include "support/TestDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int records = argc > 1 ? std::atoi(argv[1]) : 10'000;
    const TestDatabase database;
    const QTemporaryDir folder;
    TestSession session(database);
    QList<LogRecord> waiting;
    for (int i = 0; i < records; ++i)
        waiting.append({QUuid::createUuid().toString(QUuid::WithoutBraces), QDateTime::currentDateTimeUtc(),
                        2, QStringLiteral("On the way %1").arg(i), QStringLiteral("Unit20"),
                        QStringLiteral("Dispatch")});
    EventSpool(folder.path(), session.Database().Id()).Append(waiting);
    CStringSourceImpl source{QStringList{}};
    EventLog log(session, source.CreateStringSource(QStringLiteral("CKYN")), folder.path(),
                 Lane::Kind::OwnThread);
    QElapsedTimer clock;
    clock.start();
    log.WriteWaiting();
    const bool stored = QTest::qWaitFor([&] { return log.Waiting() > 0; }, 10'000) &&
                        QTest::qWaitFor([&] { return log.Waiting() == 0; }, 600'000);
    std::printf("%d records stored in %.2f s\n", records, static_cast<double>(clock.elapsed()) / 1000);
    return stored ? 0 : 1;
}
