#include "logbook/window/ExportTable.h"

#include "core/texts/Errors.h"
#include "dao/base/FileAccess.h"

#include <QPageLayout>

namespace {

QPdfWriter& Prepared(QPdfWriter& writer, const TablePaper::Texts& texts)
{
    constexpr int Resolution = 300;
    constexpr qreal Margin = 12; // mm
    writer.setResolution(Resolution);
    writer.setTitle(texts.title);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                     QMarginsF(Margin, Margin, Margin, Margin), QPageLayout::Millimeter));
    return writer;
}

} // namespace

ExportFile::ExportFile(const QString& path) : m_file(path)
{
    if (!m_file.open(QIODevice::WriteOnly) || !m_file.setPermissions(dao::OwnerOnly))
        Fail();
}

void ExportFile::Write(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    if (m_file.write(bytes) != bytes.size())
        Fail();
}

void ExportFile::Keep()
{
    if (!dao::Commit(m_file))
        Fail();
}

void ExportFile::Fail() const
{
    throw Error(ErrorCode::General, QStringLiteral("%1: %2").arg(m_file.fileName(), m_file.errorString()));
}

PdfTable::PdfTable(const QString& path, const TablePaper::Texts& texts)
    : m_file(path),
      m_writer(&m_file.Device()),
      m_paper(Prepared(m_writer, texts), texts),
      m_failure(texts.failure)
{
}

void PdfTable::Keep()
{
    if (!m_paper.End())
        throw Error(ErrorCode::General, m_failure);
    m_file.Keep();
}

PrintedTable::PrintedTable(QPrinter& printer, const TablePaper::Texts& texts)
    : m_printer(printer),
      m_paper(printer, texts)
{
}

PrintedTable::~PrintedTable()
{
    if (!m_kept)
        m_printer.abort();
}

void PrintedTable::Keep()
{
    m_kept = true;
    if (!m_paper.End())
        throw Error(ErrorCode::General, m_printer.printerName());
}
