#pragma once

#include "core/backup/BackupPlan.h"
#include "core/base/Lane.h"
#include "dao/base/Location.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <exception>
#include <functional>
#include <optional>

class Settings;
struct Clock;
struct IStringSource;

// Backs the database of files up once a day while somebody is logged on, into the folder that the settings
// name, and gives up what need not be kept. A lane of its own does all that touches the folder: a share that
// hangs holds neither the window nor the records. Without a folder in the settings, and on a server, nothing
// happens. On the window's thread.
class DailyBackup : public QObject {
    Q_OBJECT

public:
    static inline const QString Section = QStringLiteral("Backup"); // of the settings file
    static inline const QString FolderKey = QStringLiteral("Folder");
    static inline const QString NewestKey = QStringLiteral("Newest");
    static inline const QString DaysKey = QStringLiteral("Days");

    // `location`: the database that is open, asked for at each Begin.
    DailyBackup(std::function<dao::Location()> location, const Settings& settings,
                const IStringSource& strings, const Clock& clock, Lane::Kind lane);

    // How many the settings say are kept. What is no number counts as nothing.
    static BackupPlan PlanIn(const Settings& settings);

    void Begin(); // somebody has logged on
    void End();
    // Makes a backup if one is due; it does so by itself every minute.
    void Look();

Q_SIGNALS:
    // There is no backup of today, and why. Once a day for as long as it stays so.
    void Failed(const QString& text);

private:
    struct Outcome {
        QString made; // path; empty when none was due
        int givenUp = 0;
        std::exception_ptr failure;
    };

    static Outcome Work(const dao::Location& database, const QString& folder, const BackupPlan& plan,
                        const QDateTime& now);
    void Take(const Outcome& outcome);
    void Fail(const QString& cause);

    std::function<dao::Location()> m_location;
    const Settings& m_settings;
    const IStringSource& m_strings;
    const Clock& m_clock;
    dao::Location m_database;
    QString m_folder;
    std::optional<QDateTime> m_working; // since then
    std::optional<QDateTime> m_failed;
    std::optional<QDateTime> m_told;
    QTimer m_timer;
    Lane m_lane;
};
