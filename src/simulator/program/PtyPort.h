#pragma once

#include "simulator/program/FileDescriptor.h"
#include "simulator/program/Port.h"
#include "simulator/program/SymbolicLink.h"

#include <QSocketNotifier>
#include <QTimer>

#include <memory>

namespace sim {

// A pseudo terminal in raw mode whose other end the console opens like a serial port, by the name of a
// symbolic link. The link exists as long as this object.
class PtyPort : public Port {
    Q_OBJECT

public:
    // Throws PortError.
    explicit PtyPort(const QString& link, QObject* parent = nullptr);
    ~PtyPort() override;

    QString Name() const override { return m_link.Path(); }
    void Send(const QByteArray& octets) override;

private:
    void Open();
    bool SettleTerminal();
    bool ConsoleIsThere() const;
    void LookForConsole();
    void Read();
    void Flush();
    void Leave();

    SymbolicLink m_link;
    FileDescriptor m_master;
    QString m_terminal; // path of the other end
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
    QTimer m_look; // runs while nobody has the other end open
    QByteArray m_waiting;
};

} // namespace sim
