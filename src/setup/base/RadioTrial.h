#pragma once

#include "addressing/RadioNumbering.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>

class Map27Control;
struct IStringSource;

// Asks the radio at a port for its own number, on a link of its own that is closed again. Nothing is sent
// over the air. Each trial ends with one of the signals, unless it is stopped.
class RadioTrial : public QObject {
    Q_OBJECT

public:
    using ControlMaker = std::function<std::unique_ptr<Map27Control>()>;

    RadioTrial(ControlMaker makeControl, const IStringSource& strings);
    ~RadioTrial() override;

    void Begin(const QString& port, int baud);
    void Stop();
    bool IsRunning() const { return m_control != nullptr; }

Q_SIGNALS:
    void Answered(const RadioNumbering& numbering);
    void Failed(const QString& reason);

private:
    void TakeNumbering();
    void Fail(const QString& reason);

    ControlMaker m_makeControl;
    const IStringSource& m_strings;
    std::unique_ptr<Map27Control> m_control;
    QString m_port;
    QTimer m_limit;
};
