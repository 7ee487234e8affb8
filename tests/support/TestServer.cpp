#include "support/TestServer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <csignal>
#include <pwd.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The newest installed version's programs; empty when there are none.
QString Programs()
{
    QDir versions("/usr/lib/postgresql");
    QString found;
    for (const QString& version : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        if (QFile::exists(versions.filePath(version + "/bin/initdb")))
            found = versions.filePath(version + "/bin/");
    return found;
}

// The server refuses to run as root.
void BecomeServerUser()
{
    if (geteuid() != 0)
        return;
    const passwd* user = getpwnam("postgres");
    if (!user || setgid(user->pw_gid) != 0 || setuid(user->pw_uid) != 0)
        _exit(126);
}

pid_t Spawn(const QStringList& command, const QString& output)
{
    std::vector<QByteArray> texts;
    for (const QString& argument : command)
        texts.push_back(argument.toLocal8Bit());
    std::vector<char*> arguments;
    for (QByteArray& text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    const QByteArray outputFile = output.toLocal8Bit();
    const pid_t process = fork();
    if (process == 0) {
        BecomeServerUser();
        prctl(PR_SET_PDEATHSIG, SIGQUIT); // never outlives the tests
        if (!freopen(outputFile.constData(), "a", stdout) || !freopen(outputFile.constData(), "a", stderr))
            _exit(125);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    return process;
}

bool Succeeds(pid_t process)
{
    int status = 0;
    return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

bool TestServer::IsWanted()
{
    return qgetenv("VELTORKYN_TEST_ENGINE") == "postgresql";
}

bool TestServer::IsInstalled()
{
    return !Programs().isEmpty();
}

TestServer& TestServer::Get()
{
    static TestServer server;
    return server;
}

TestServer::TestServer() : m_folder(QDir::tempPath() + "/kynpg")
{
    if (geteuid() == 0) {
        const passwd* user = getpwnam("postgres");
        if (!user || chown(m_folder.path().toLocal8Bit(), user->pw_uid, user->pw_gid) != 0)
            throw std::runtime_error("the server's folder cannot be given to the user postgres");
    }
    if (!Succeeds(Spawn({Programs() + "initdb", "-D", m_folder.filePath("data"), "-U", "postgres", "-A",
                         "trust", "-E", "UTF8", "--locale=C", "--no-sync", "--no-instructions"},
                        m_folder.filePath("log"))))
        throw std::runtime_error("initdb failed: " + m_folder.path().toStdString());
    QFile rules(m_folder.filePath("data/pg_hba.conf"));
    if (!rules.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw std::runtime_error("pg_hba.conf cannot be written");
    rules.write("local all postgres trust\nlocal all all scram-sha-256\n");
    rules.close();
    Start();
}

TestServer::~TestServer()
{
    StopAtOnce();
}

void TestServer::Start()
{
    // A crash of the server's processes, which the tests make, loses nothing that the system has been given.
    m_process = Spawn({Programs() + "postgres", "-D", m_folder.filePath("data"), "-k", m_folder.path(), "-c",
                       "listen_addresses=", "-c",
                       qEnvironmentVariableIsSet("VELTORKYN_TEST_DURABLE") ? "fsync=on" : "fsync=off", "-c",
                       "max_connections=100", "-c", "shared_buffers=32MB"},
                      m_folder.filePath("log"));
    for (int i = 0; i < 500; ++i) {
        if (QProcess::execute(Programs() + "pg_isready", {"-q", "-h", m_folder.path()}) == 0)
            return;
        usleep(20000);
    }
    throw std::runtime_error("the server does not start: " + m_folder.path().toStdString());
}

void TestServer::StopAtOnce()
{
    if (m_process == 0)
        return;
    kill(m_process, SIGQUIT);
    waitpid(m_process, nullptr, 0);
    m_process = 0;
}

void TestServer::Hold(bool on) const
{
    const int signal = on ? SIGSTOP : SIGCONT;
    kill(m_process, signal); // it starts no other meanwhile
    for (const QString& process : QDir("/proc").entryList(QDir::Dirs)) {
        QFile state("/proc/" + process + "/stat");
        // After the name, which ends with the last bracket: the state, and the parent.
        if (state.open(QIODevice::ReadOnly) &&
            QString::fromLatin1(state.readAll()).section(')', -1).section(' ', 2, 2).toInt() == m_process)
            kill(process.toInt(), signal);
    }
}

QString TestServer::Target(const QString& database) const
{
    return QStringLiteral("postgresql://postgres@/%1?host=%2").arg(database, m_folder.path());
}

QString TestServer::NewName()
{
    return QStringLiteral("t%1").arg(++m_names);
}
