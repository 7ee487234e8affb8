#pragma once

#include "core/base/Lane.h"
#include "logbook/window/TablePaper.h"

#include <QList>
#include <QWidget>
#include <functional>
#include <memory>

class QLabel;
class QPushButton;
class QPrinter;
struct IStringSource;

// The lower edge of a window with a table: what there is to say, and buttons that write the table as CSV and
// PDF, print it, and close the window. It is written beside the window's thread, one at a time.
class TableExport : public QWidget {
    Q_OBJECT

public:
    // What is written: the table as it is when it is asked for.
    struct Content {
        TablePaper::Texts texts; // its page and failure are filled in here
        QList<QStringList> rows;
        QString csv;
    };

    // The strings outlive it; `window` is closed by its button.
    TableExport(const IStringSource& strings, std::function<Content()> content, QWidget& window);
    ~TableExport() override;

    void Say(const QString& text);
    // Nothing can be written while there is nothing.
    void Offer(bool on);

private:
    enum class Target { Csv, Pdf, Paper };

    QPushButton* Button(const char* name, int textId);
    void AskForFile(Target target);
    void Begin(Target target, const QString& file, const std::shared_ptr<QPrinter>& printer,
               const Content& content);
    void End(const QString& text);
    void Enable();

    const IStringSource& m_strings;
    std::function<Content()> m_content;
    QWidget& m_window;
    QLabel* lblState;
    QPushButton* cmdCsv;
    QPushButton* cmdPdf;
    QPushButton* cmdPrint;
    bool m_offered = false;
    bool m_running = false;
    std::unique_ptr<Lane> m_lane;
};
