#include "mainwindow/keys/frmKeys.h"

#include "core/desktop/Prompt.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "mainwindow/keys/KeyBindings.h"
#include "mainwindow/keys/KeyBox.h"
#include "mainwindow/keys/KeyTextIds.h"

#include <QAbstractTextDocumentLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTableWidget>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

enum Column { What, Where, Key, Second, Columns };

constexpr int Headings[] = {KeyText::WhatColumn, KeyText::WhereColumn, KeyText::KeyColumn,
                            KeyText::SecondColumn};
constexpr int Widths[] = {68, 24, 22, 18}; // characters
constexpr int WindowLines = 30;

} // namespace

frmKeys::frmKeys(const IStringSource& strings, IPrompt& prompt, KeyBindings& keys)
    : m_strings(strings),
      m_prompt(prompt),
      m_keys(keys),
      lvKeys(new QTableWidget(this)),
      txtKey(new KeyBox(this)),
      lblNote(new QLabel(this))
{
    setObjectName(QStringLiteral("frmKeys"));
    setProperty("textId", KeyText::Caption);
    BuildTable();
    Build();
    LoadCaptions(*this, strings);
    Fill();
    connect(&keys, &KeyBindings::Changed, this, &frmKeys::Fill);
    connect(lvKeys, &QTableWidget::currentCellChanged, this, &frmKeys::FollowLine);
    connect(txtKey, &KeyBox::KeyPressed, lblNote, &QLabel::clear);
    lvKeys->setCurrentCell(0, What);
}

void frmKeys::BuildTable()
{
    lvKeys->setObjectName(QStringLiteral("lvKeys"));
    lvKeys->setProperty("accessibleNameId", KeyText::Caption);
    lvKeys->setColumnCount(Columns);
    lvKeys->setRowCount(static_cast<int>(KeyTable().size()));
    lvKeys->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvKeys->setSelectionMode(QAbstractItemView::SingleSelection);
    lvKeys->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvKeys->setTabKeyNavigation(false);
    lvKeys->setShowGrid(false);
    lvKeys->verticalHeader()->hide();
    lvKeys->verticalHeader()->setMinimumSectionSize(1);
    lvKeys->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 4);
    lvKeys->horizontalHeader()->setStretchLastSection(true);
    lvKeys->horizontalHeader()->setHighlightSections(false);
    const int letter = fontMetrics().averageCharWidth();
    int width = 0;
    for (int column = 0; column < Columns; ++column) {
        lvKeys->setHorizontalHeaderItem(column, new QTableWidgetItem(m_strings.LoadString(Headings[column])));
        lvKeys->setColumnWidth(column, Widths[column] * letter);
        width += Widths[column] * letter;
    }
    resize(width + 10 * letter, WindowLines * fontMetrics().lineSpacing());
}

void frmKeys::Build()
{
    const auto button = [this](const char* name, int textId) {
        auto* made = new QPushButton(this);
        made->setObjectName(QLatin1String(name));
        made->setProperty("textId", textId);
        made->setAutoDefault(false);
        return made;
    };
    txtKey->setObjectName(QStringLiteral("txtKey"));
    auto* label = new QLabel(this);
    label->setProperty("textId", KeyText::NewKey);
    label->setBuddy(txtKey);
    lblNote->setObjectName(QStringLiteral("lblNote"));
    lblNote->setTextFormat(Qt::PlainText);
    lblNote->setWordWrap(true);
    lblNote->setMinimumHeight(2 * fontMetrics().lineSpacing());
    cmdSetKey = button("cmdSetKey", KeyText::Set);
    cmdSetKey->setDefault(true);
    cmdNoKey = button("cmdNoKey", KeyText::NoKey);
    cmdKeyAsDelivered = button("cmdKeyAsDelivered", KeyText::AsDelivered);
    QPushButton* print = button("cmdPrintKeys", KeyText::Print);
    QPushButton* close = button("cmdCloseKeys", KeyText::Close);
    connect(
        cmdSetKey, &QPushButton::clicked, this,
        [this] {
            if (!txtKey->Key().isEmpty())
                Change([this](const KeyRow& row) { return m_keys.Choose(row, txtKey->Key()); });
        });
    connect(
        cmdNoKey, &QPushButton::clicked, this,
        [this] { Change([this](const KeyRow& row) { return m_keys.Choose(row, {}); }); });
    connect(cmdKeyAsDelivered, &QPushButton::clicked, this,
            [this] { Change([this](const KeyRow& row) { return m_keys.Restore(row); }); });
    connect(print, &QPushButton::clicked, this, &frmKeys::AskForPrinter);
    connect(close, &QPushButton::clicked, this, &QWidget::hide);

    auto* edit = new QHBoxLayout;
    edit->addWidget(label);
    edit->addWidget(txtKey, 1);
    for (QPushButton* changes : {cmdSetKey, cmdNoKey, cmdKeyAsDelivered})
        edit->addWidget(changes);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(lblNote, 1);
    buttons->addWidget(print);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lvKeys);
    layout->addLayout(edit);
    layout->addLayout(buttons);
}

void frmKeys::Fill()
{
    int line = 0;
    for (const KeyRow& row : KeyTable()) {
        const bool own = row.kind == KeyRow::Kind::Own;
        const QString chosen = m_keys.Chosen(row).toString(QKeySequence::NativeText);
        const QString cells[] = {m_keys.Describe(row), m_strings.LoadString(row.where),
                                 own ? chosen : row.keys.toString(QKeySequence::NativeText),
                                 own ? QString() : chosen};
        for (int column = 0; column < Columns; ++column)
            lvKeys->setItem(line, column, new QTableWidgetItem(cells[column]));
        ++line;
    }
    FollowLine();
}

const KeyRow* frmKeys::Row() const
{
    const int line = lvKeys->currentRow();
    return line < 0 ? nullptr : &KeyTable()[static_cast<std::size_t>(line)];
}

void frmKeys::FollowLine()
{
    const KeyRow* row = Row();
    const bool may = row != nullptr && m_keys.MayChange(*row);
    for (QWidget* control : std::initializer_list<QWidget*>{txtKey, cmdSetKey, cmdNoKey, cmdKeyAsDelivered})
        control->setEnabled(may);
    txtKey->Show(row != nullptr ? m_keys.Chosen(*row) : QKeySequence());
    lblNote->setText(may ? QString() : m_strings.LoadString(KeyText::KeyStays));
}

void frmKeys::Change(const std::function<QString(const KeyRow& row)>& change)
{
    const KeyRow* row = Row();
    if (row == nullptr)
        return;
    try {
        const QString refusal = change(*row);
        lblNote->setText(refusal);
        (refusal.isEmpty() ? static_cast<QWidget*>(lvKeys) : txtKey)->setFocus(); // for the next, or another
    } catch (const std::exception& failure) {
        m_prompt.ShowWarning(DescribeError(failure, m_strings));
    }
}

void frmKeys::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    lvKeys->setFocus();
}

void frmKeys::AskForPrinter()
{
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    auto* dialog = new QPrintDialog(printer.get(), this);
    dialog->setObjectName(QStringLiteral("printDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, printer] {
        try {
            PrintOn(*printer);
        } catch (const std::exception& failure) {
            m_prompt.ShowWarning(DescribeError(failure, m_strings));
        }
    });
    dialog->open();
}

void frmKeys::PrintOn(QPrinter& printer) const
{
    QPainter painter;
    if (!painter.begin(&printer))
        throw Error(ErrorCode::General, m_strings.LoadString(KeyText::NotPrinted));
    const QString cell = QStringLiteral("<td>%1</td>");
    QString table = QStringLiteral("<tr>");
    for (const int heading : Headings)
        table += QStringLiteral("<th align=\"left\">%1</th>").arg(m_strings.LoadString(heading));
    for (int line = 0; line < lvKeys->rowCount(); ++line) {
        table += QStringLiteral("</tr><tr>");
        for (int column = 0; column < Columns; ++column)
            table += cell.arg(lvKeys->item(line, column)->text().toHtmlEscaped());
    }
    QTextDocument sheet;
    sheet.setHtml(QStringLiteral("<h2>%1</h2><table cellpadding=\"2\" width=\"100%\">%2</tr></table>")
                      .arg(windowTitle(), table));
    const QSizeF page = painter.viewport().size();
    sheet.documentLayout()->setPaintDevice(&printer);
    sheet.setPageSize(page);
    for (int number = 0; number < sheet.pageCount(); ++number) {
        if (number > 0)
            printer.newPage();
        const QRectF part(QPointF(0, number * page.height()), page);
        painter.save();
        painter.translate(0, -part.top());
        sheet.drawContents(&painter, part);
        painter.restore();
    }
    if (!painter.end() || printer.printerState() == QPrinter::Error)
        throw Error(ErrorCode::General, m_strings.LoadString(KeyText::NotPrinted));
}
