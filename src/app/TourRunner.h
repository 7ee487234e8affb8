#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <vector>

// One step of the guided tour: what is done, and what must then be seen.
struct TourStep {
    QString name;     // of its picture and its line in tour.log
    QString expected; // in words, for the line of a failure
    std::function<void()> act;
    // Empty when what is expected is seen; else what is seen instead.
    std::function<QString()> look;
    int patience = 10000; // ms until it must be seen
};

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
    void Act();
    void Look();
    void End(const QString& seen);
    QString Number() const;
    void SavePicture() const;

    QString m_folder;
    std::vector<TourStep> m_steps;
    std::size_t m_current = 0;
    bool m_failed = false;
    QString m_trouble; // what went wrong while acting
    QElapsedTimer m_waited;
    QTimer m_timer;
    QFile m_log;
};
