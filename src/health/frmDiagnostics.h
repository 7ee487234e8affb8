#pragma once

#include "core/base/Lane.h"
#include "health/HealthFacts.h"

#include <QTimer>
#include <QWidget>

class HealthCollector;
class QCheckBox;
class QLabel;
class QPushButton;
class QTreeWidget;
struct Clock;
struct IStringSource;

// How the console is, read again every second while it is open, and the support report. Stands beside the
// other windows.
class frmDiagnostics : public QWidget {
    Q_OBJECT

public:
    // All must outlive it.
    frmDiagnostics(HealthCollector& collector, const IStringSource& strings, const Clock& clock,
                   QString stateFolder, Lane::Kind lane, QWidget* parent = nullptr);

    void Open();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildList();
    void BuildButtons();
    void Look();
    void Show(const QList<HealthLine>& lines);
    void CopySelected();
    void SaveReport();
    void Say(const QString& text);

    HealthCollector& m_collector;
    const IStringSource& m_strings;
    const Clock& m_clock;
    QString m_stateFolder;
    QList<HealthLine> m_lines;
    QTimer m_again;
    QTreeWidget* lvHealth;
    QCheckBox* chkWithTexts;
    QPushButton* cmdSaveReport;
    QLabel* lblOutcome;
    Lane m_lane; // of the report
};
