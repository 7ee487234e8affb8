#pragma once

#include <QWidget>
#include <functional>

class LogbookExport;
class LogbookFeed;
class LogbookFilterBar;
class LogbookModel;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTableView;
struct Clock;
struct IDbSession;
struct IStringSource;

// The log of all consoles: everything in the database, the newest first, found by filters and words, exported
// and printed. Stands beside the other windows; ends with the operator's session.
class frmLogbook : public QWidget {
    Q_OBJECT

public:
    // `own`: the names of our radio, callsign and number, as they are when it is asked. All outlive it.
    frmLogbook(IDbSession& session, const IStringSource& strings, const Clock& clock,
               std::function<QStringList()> own, QWidget* parent = nullptr);
    ~frmLogbook() override;

    // With the newest lines.
    void Open();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildTable();
    void BuildButtons();
    QPushButton* Button(const char* name, int textId);
    void ConnectFeed();
    void ConnectExport();
    void Search();
    void ShowState();
    void Say(const QString& text);
    void ReadOn();
    void KeepInPlace(int linesAbove);
    void Select(int row);
    void SetFollowing(bool on);
    void AskForFile(bool pdf);
    void AskForPrinter();
    void ShowExport(bool running);

    const IStringSource& m_strings;
    std::function<QStringList()> m_own;
    LogbookModel* m_model;
    LogbookFeed* m_feed;
    LogbookExport* m_export;
    LogbookFilterBar* m_filters;
    QTableView* lvLogbook;
    QLabel* lblState;
    QCheckBox* chkFollow;
    QProgressBar* m_bar;
    QPushButton* cmdNewest = nullptr;
    QPushButton* cmdCsv = nullptr;
    QPushButton* cmdPdf = nullptr;
    QPushButton* cmdPrint = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdClose = nullptr;
};
