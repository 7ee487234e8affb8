#pragma once

#include "tour/TourStep.h"

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QTimer>

// Takes the steps one after the other while the program's own event loop runs, modal dialogs included. Each
// step is waited for, photographed as NN-name.png and written to tour.log. The first failure ends the tour.
class TourRunner : public QObject {
    Q_OBJECT

public:
    TourRunner(const QString& folder, std::vector<TourStep> steps);

    void Start();
    bool Failed() const { return m_failed; }

Q_SIGNALS:
    void Finished();

private:
    void Begin();
    void TakeLine();
    void Act();
    void Look();
    void End(const QString& seen);
    QString Number() const;
    void SavePicture() const;
    const TourStep& Step() const { return m_steps[m_current]; }

    QString m_folder;
    std::vector<TourStep> m_steps;
    std::size_t m_current = 0;
    std::size_t m_line = 0; // of the step
    bool m_failed = false;
    QElapsedTimer m_waited; // since the last deed
    QTimer m_timer;         // until the next line
    QFile m_log;
};
