#pragma once

#include "logbook/query/Whereabouts.h"
#include "logbook/window/TableExport.h"

#include <QTimer>
#include <QWidget>
#include <functional>

class QPushButton;
class ReportReader;
class SearchedTable;
struct Clock;
struct IDbSession;
struct IStringSource;

// The radios of the directory: on duty since when, heard when, with which status last, in which dynamic
// group, and who has moved them there. Read again every half a minute while it is open. Stands beside the
// other windows; ends with the operator's session.
class frmWhoIsWhere : public QWidget {
    Q_OBJECT

public:
    // `own`: the names of our radio, callsign and number, as they are when it is asked. All outlive it.
    frmWhoIsWhere(IDbSession& session, const IStringSource& strings, const Clock& clock,
                  std::function<QStringList()> own, QWidget* parent = nullptr);
    ~frmWhoIsWhere() override;

    void Open();

Q_SIGNALS:
    // The operator wants to see the regroupings of a radio.
    void HistoryRequested(qint32 addressId, const QString& callsign);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    enum Column { Callsign, Number, Name, State, Since, Heard, Status, Group, MovedBy };

    static QStringList Headings(const IStringSource& strings);
    void Read();
    void OpenHistory();
    void Show(const Whereabouts& whereabouts, const QDateTime& since);
    void Forget();
    TableExport::Content Content() const;

    const IStringSource& m_strings;
    const Clock& m_clock;
    std::function<QStringList()> m_own;
    ReportReader* m_reader;
    QTimer m_again;
    SearchedTable* m_table;
    QPushButton* cmdRegroupings;
    TableExport* m_export;
    std::vector<std::pair<qint32, QString>> m_shown; // id and callsign, by row of the table
};
