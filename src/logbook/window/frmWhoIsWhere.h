#pragma once

#include "logbook/query/Whereabouts.h"
#include "logbook/window/TableExport.h"

#include <QSortFilterProxyModel>
#include <QTimer>
#include <QWidget>
#include <functional>

class QLineEdit;
class QTableView;
class ReportReader;
class TableModel;
struct Clock;
struct IDbSession;
struct IStringSource;

// The radios of the directory: on duty since when, heard when, with which status last, in which dynamic
// group. Read again every half a minute while it is open. Stands beside the other windows; ends with the
// operator's session.
class frmWhoIsWhere : public QWidget {
    Q_OBJECT

public:
    // `own`: the names of our radio, callsign and number, as they are when it is asked. All outlive it.
    frmWhoIsWhere(IDbSession& session, const IStringSource& strings, const Clock& clock,
                  std::function<QStringList()> own, QWidget* parent = nullptr);
    ~frmWhoIsWhere() override;

    void Open();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    enum Column { Callsign, Number, Name, State, Since, Heard, Status, Group };
    static constexpr int Columns = 8;

    static QStringList Headings(const IStringSource& strings);
    void BuildSearch();
    void BuildTable();
    void Read();
    void Show(const Whereabouts& whereabouts, const QDateTime& since);
    void Forget();
    TableExport::Content Content() const;

    const IStringSource& m_strings;
    const Clock& m_clock;
    std::function<QStringList()> m_own;
    TableModel* m_model;
    QSortFilterProxyModel* m_sorted;
    ReportReader* m_reader;
    QTimer m_again;
    QLineEdit* txtSearch;
    QTableView* lvRadios;
    TableExport* m_export;
};
