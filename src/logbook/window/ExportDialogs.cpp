#include "logbook/window/ExportDialogs.h"

#include "core/texts/StringSource.h"
#include "core/widgets/PlainFileIcons.h"
#include "logbook/window/TextIds.h"

#include <QFileDialog>
#include <QPrintDialog>
#include <QPrinter>

void ExportDialogs::AskForFile(QWidget& owner, const IStringSource& strings, bool pdf,
                               const std::function<void(const QString& file)>& then)
{
    auto* dialog = new QFileDialog(&owner, strings.LoadString(LogbookText::ExportCaption));
    dialog->setObjectName(QStringLiteral("fileDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(strings.LoadString(pdf ? LogbookText::PdfFiles : LogbookText::CsvFiles));
    dialog->setDefaultSuffix(pdf ? QStringLiteral("pdf") : QStringLiteral("csv"));
    // The desktop's own dialog would be hidden behind a call's window.
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    UsePlainFileIcons(*dialog);
    QObject::connect(dialog, &QFileDialog::fileSelected, &owner, then);
    dialog->open();
}

void ExportDialogs::AskForPrinter(QWidget& owner,
                                  const std::function<void(const std::shared_ptr<QPrinter>& printer)>& then)
{
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setPageOrientation(QPageLayout::Landscape);
    auto* dialog = new QPrintDialog(printer.get(), &owner);
    dialog->setObjectName(QStringLiteral("printDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::accepted, &owner, [printer, then] { then(printer); });
    dialog->open();
}
