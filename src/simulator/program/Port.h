#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <stdexcept>

namespace sim {

// A port that cannot be opened; what() says why, for a person.
class PortError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Where the console connects. It may leave and come back; between Came and Went there is exactly one console.
class Port : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // The port's name, as it is entered in the console.
    virtual QString Name() const = 0;

    // Octets that the other side does not take are lost, as on a line without flow control.
    virtual void Send(const QByteArray& octets) = 0;

Q_SIGNALS:
    void Came();
    void Went();
    void Received(const QByteArray& octets);
};

} // namespace sim
