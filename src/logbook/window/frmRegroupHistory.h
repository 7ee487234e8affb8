#pragma once

#include "logbook/window/TableExport.h"

#include <QWidget>

class ReportReader;
class SearchedTable;
namespace dao {
struct RegroupActRecord;
} // namespace dao
struct Clock;
struct IDbSession;
struct IStringSource;

// Which radio has entered, changed or left which dynamic group, when, and by whose command: of one radio or
// group, or of all. Stands beside the other windows; ends with the operator's session.
class frmRegroupHistory : public QWidget {
    Q_OBJECT

public:
    // All outlive it.
    frmRegroupHistory(IDbSession& session, const IStringSource& strings, const Clock& clock,
                      QWidget* parent = nullptr);
    ~frmRegroupHistory() override;

    // Of an entry of the directory; of all for 0. Reads it anew.
    void Open(qint32 addressId, const QString& callsign);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    static QStringList Headings(const IStringSource& strings);
    void Show(const std::vector<dao::RegroupActRecord>& acts);
    void Forget();
    TableExport::Content Content() const;

    const IStringSource& m_strings;
    const Clock& m_clock;
    ReportReader* m_reader;
    SearchedTable* m_table;
    TableExport* m_export;
};
