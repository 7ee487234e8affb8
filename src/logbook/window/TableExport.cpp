#include "logbook/window/TableExport.h"

#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "logbook/window/ExportDialogs.h"
#include "logbook/window/ExportTable.h"
#include "logbook/window/ReportTextIds.h"
#include "logbook/window/TextIds.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <exception>
#include <utility>

namespace {

void Write(ExportTable& table, const QList<QStringList>& rows)
{
    for (const QStringList& row : rows)
        table.Paper().Add(row);
    table.Keep();
}

} // namespace

TableExport::TableExport(const IStringSource& strings, std::function<Content()> content, QWidget& window)
    : QWidget(&window),
      m_strings(strings),
      m_content(std::move(content)),
      m_window(window),
      lblState(new QLabel(this)),
      cmdCsv(Button("cmdExportCsv", LogbookText::ExportCsv)),
      cmdPdf(Button("cmdExportPdf", LogbookText::ExportPdf)),
      cmdPrint(Button("cmdPrint", LogbookText::Print))
{
    lblState->setObjectName(QStringLiteral("lblState"));
    lblState->setTextFormat(Qt::PlainText);
    lblState->setWordWrap(true);
    QPushButton* close = Button("cmdClose", LogbookText::Close);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lblState, 1);
    for (QPushButton* button : {cmdCsv, cmdPdf, cmdPrint, close})
        layout->addWidget(button);
    connect(
        cmdCsv, &QPushButton::clicked, this, [this] { AskForFile(Target::Csv); });
    connect(
        cmdPdf, &QPushButton::clicked, this, [this] { AskForFile(Target::Pdf); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] {
        ExportDialogs::AskForPrinter(m_window, [this, content = m_content()](const auto& printer) {
            Begin(Target::Paper, {}, printer, content);
        });
    });
    connect(close, &QPushButton::clicked, &window, &QWidget::close);
    Enable();
}

TableExport::~TableExport() = default;

QPushButton* TableExport::Button(const char* name, int textId)
{
    auto* button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setProperty("textId", textId);
    button->setAutoDefault(false);
    return button;
}

void TableExport::Say(const QString& text)
{
    lblState->setText(text);
}

void TableExport::Offer(bool on)
{
    m_offered = on;
    Enable();
}

void TableExport::Enable()
{
    for (QPushButton* button : {cmdCsv, cmdPdf, cmdPrint})
        button->setEnabled(m_offered && !m_running);
}

// What is shown now is written, whatever is shown by the time that a file is chosen.
void TableExport::AskForFile(Target target)
{
    ExportDialogs::AskForFile(
        m_window, m_strings, target == Target::Pdf,
        [this, target, content = m_content()](const QString& file) {
            Begin(target, file, nullptr, content);
        });
}

void TableExport::Begin(Target target, const QString& file, const std::shared_ptr<QPrinter>& printer,
                        const Content& content)
{
    TablePaper::Texts texts = content.texts;
    texts.page = m_strings.LoadString(LogbookText::Page);
    texts.failure = m_strings.LoadString(LogbookText::CannotPaint);
    m_running = true;
    Enable();
    m_lane = std::make_unique<Lane>(Lane::Kind::OwnThread);
    m_lane->Do([this, target, file, printer, content, texts]() -> Lane::Answer {
        try {
            if (target == Target::Csv) {
                ExportFile csv(file);
                csv.Write(content.csv);
                csv.Keep();
            } else if (target == Target::Pdf) {
                PdfTable table(file, texts);
                Write(table, content.rows);
            } else {
                PrintedTable table(*printer, texts);
                Write(table, content.rows);
            }
            return [this, file] {
                End(file.isEmpty() ? m_strings.LoadString(ReportText::Printed)
                                   : FormatMessage(m_strings, ReportText::Written, {file}));
            };
        } catch (...) {
            return [this, failure = std::current_exception()] {
                try {
                    std::rethrow_exception(failure);
                } catch (const std::exception& reason) {
                    End(DescribeError(reason, m_strings));
                }
            };
        }
    });
}

void TableExport::End(const QString& text)
{
    m_running = false;
    Enable();
    Say(text);
}
