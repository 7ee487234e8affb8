#pragma once

#include "logbook/window/TablePaper.h"

#include <QPdfWriter>
#include <QPrinter>
#include <QSaveFile>

// A file of its owner's alone, which is there as a whole or not at all. Raises Error that names it.
class ExportFile {
public:
    explicit ExportFile(const QString& path);

    void Write(const QString& text); // in UTF-8
    void Keep();
    QIODevice& Device() { return m_file; }

private:
    [[noreturn]] void Fail() const;

    QSaveFile m_file;
};

// A table on its way into a PDF or onto paper. What is not kept leaves nothing behind.
struct ExportTable {
    virtual ~ExportTable() = default;
    virtual TablePaper& Paper() = 0;
    // Raises Error.
    virtual void Keep() = 0;
};

class PdfTable : public ExportTable {
public:
    PdfTable(const QString& path, const TablePaper::Texts& texts);

    TablePaper& Paper() override { return m_paper; }
    void Keep() override;

private:
    ExportFile m_file;
    QPdfWriter m_writer;
    TablePaper m_paper;
    QString m_failure;
};

class PrintedTable : public ExportTable {
public:
    // The printer outlives it.
    PrintedTable(QPrinter& printer, const TablePaper::Texts& texts);
    ~PrintedTable() override;

    TablePaper& Paper() override { return m_paper; }
    void Keep() override;

private:
    QPrinter& m_printer;
    TablePaper m_paper;
    bool m_kept = false;
};
