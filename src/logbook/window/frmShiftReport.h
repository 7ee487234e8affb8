#pragma once

#include "logbook/query/ShiftLines.h"
#include "logbook/window/TableExport.h"

#include <QStringList>
#include <QWidget>
#include <functional>

class QDateTimeEdit;
class QLabel;
class QPushButton;
class QTableView;
class ReportReader;
class TableModel;
struct Clock;
struct IDbSession;
struct IStringSource;

// What came in a shift, who waited for an operator, and how it was answered: as a page, printed, and as CSV.
// Stands beside the other windows; ends with the operator's session.
class frmShiftReport : public QWidget {
    Q_OBJECT

public:
    // `own`: the names of our radio, callsign and number, as they are when it is asked. All outlive it.
    frmShiftReport(IDbSession& session, const IStringSource& strings, const Clock& clock,
                   std::function<QStringList()> own, QWidget* parent = nullptr);
    ~frmShiftReport() override;

    // With the last eight hours.
    void Open();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QDateTimeEdit* TimeField(const char* name);
    void BuildPeriod();
    void BuildTable();
    void Read();
    void Show(const ShiftReport& report);
    void Forget();
    TableExport::Content Content() const;

    const IStringSource& m_strings;
    const Clock& m_clock;
    std::function<QStringList()> m_own;
    const ShiftLines m_lines;
    TableModel* m_model;
    ReportReader* m_reader;
    ShiftReport m_report;
    QDateTimeEdit* txtFrom = nullptr;
    QDateTimeEdit* txtTo = nullptr;
    QLabel* lblSummary;
    QTableView* lvShift;
    TableExport* m_export;
};
