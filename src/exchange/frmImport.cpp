#include "exchange/frmImport.h"

#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/ListHelpers.h"
#include "dao/Transaction.h"
#include "exchange/InputFile.h"
#include "exchange/TextIds.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <algorithm>

namespace {

constexpr int ListLines = 16;
constexpr int ListWidth = 90; // characters

int NameOf(ImportOutcome outcome)
{
    switch (outcome) {
    case ImportOutcome::Added:
        return ExchangeText::Added;
    case ImportOutcome::Changed:
        return ExchangeText::Changed;
    case ImportOutcome::Unchanged:
        return ExchangeText::Unchanged;
    case ImportOutcome::Removed:
        return ExchangeText::Removed;
    case ImportOutcome::Refused:
        break;
    }
    return ExchangeText::Refused;
}

} // namespace

frmImport::frmImport(const ExchangeServices& services, const ExchangedTable& table, const QString& path)
    : m_services(services),
      m_table(table),
      m_path(path)
{
    Build();
    Read();
}

void frmImport::Build()
{
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(FormatMessage(m_services.strings, ExchangeText::Caption, {QFileInfo(m_path).fileName()}));
    auto* column = new QVBoxLayout(this);
    m_text = new QLabel(FormatMessage(m_services.strings, ExchangeText::Reading, {m_path}), this);
    m_text->setObjectName(QStringLiteral("lblImport"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    column->addWidget(m_text);
    m_list = new QTreeWidget(this);
    m_list->setObjectName(QStringLiteral("lvImport"));
    m_list->setProperty("accessibleNameId", ExchangeText::ListName);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setHeaderLabels({Text(ExchangeText::LineColumn), Text(ExchangeText::EntryColumn),
                             Text(ExchangeText::OutcomeColumn), Text(ExchangeText::ReasonColumn)});
    m_list->setMinimumSize(ListWidth * fontMetrics().averageCharWidth(),
                           ListLines * fontMetrics().lineSpacing());
    column->addWidget(m_list);
    if (m_table.optionText != 0) {
        m_option = AddChoice("chkImportOption", m_table.optionText);
        connect(m_option, &QCheckBox::toggled, this, &frmImport::Preview);
    }
    m_leaveOut = AddChoice("chkLeaveOut", ExchangeText::LeaveOutRefused);
    m_leaveOut->hide();
    connect(m_leaveOut, &QCheckBox::toggled, this, &frmImport::Enable);
    auto* buttons = new QHBoxLayout;
    column->addLayout(buttons);
    buttons->addStretch();
    m_import = AddButton("cmdImportNow", ExchangeText::Import);
    m_import->setEnabled(false);
    QPushButton* cancel = AddButton("cmdCancelImport", ExchangeText::Cancel);
    buttons->addWidget(m_import);
    buttons->addWidget(cancel);
    connect(m_import, &QPushButton::clicked, this, &frmImport::Store);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    LoadCaptions(*this, m_services.strings);
}

QCheckBox* frmImport::AddChoice(const char* name, int textId)
{
    auto* choice = new QCheckBox(this);
    choice->setObjectName(QLatin1String(name));
    choice->setProperty("textId", textId);
    choice->setEnabled(false);
    layout()->addWidget(choice);
    return choice;
}

QPushButton* frmImport::AddButton(const char* name, int textId)
{
    auto* button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setProperty("textId", textId);
    button->setAutoDefault(false);
    return button;
}

void frmImport::Read()
{
    const QString tooLarge = Text(ExchangeText::FileTooLarge);
    m_lane.Do([this, path = m_path, tooLarge]() -> Lane::Answer {
        QByteArray bytes;
        QString problem;
        try {
            bytes = ReadInputFile(path, tooLarge);
        } catch (const std::exception& failure) {
            problem = QString::fromUtf8(failure.what());
        }
        return [this, bytes, problem] { Take(bytes, problem); };
    });
}

void frmImport::Take(const QByteArray& bytes, const QString& problem)
{
    if (!problem.isEmpty()) {
        ShowProblem(problem);
        return;
    }
    try {
        m_file.emplace(m_path, bytes, m_table.columns, m_services.strings);
    } catch (const std::exception& failure) {
        ShowProblem(DescribeError(failure, m_services.strings));
        return;
    }
    Preview();
}

void frmImport::Preview()
{
    try {
        const auto import = m_table.import(*m_file, m_option && m_option->isChecked());
        m_notice = import->Notice();
        m_lines = import->Check();
        Show();
    } catch (const std::exception& failure) {
        ShowProblem(DescribeError(failure, m_services.strings));
    }
}

// The refused lines first: they would be lost among thousands.
void frmImport::Show()
{
    std::vector<ImportLine> lines = m_lines;
    std::stable_partition(lines.begin(), lines.end(),
                          [](const ImportLine& line) { return line.outcome == ImportOutcome::Refused; });
    QList<QTreeWidgetItem*> items;
    for (const ImportLine& line : lines)
        items.append(new QTreeWidgetItem({line.line == 0 ? QString() : QString::number(line.line), line.entry,
                                          Text(NameOf(line.outcome)), line.reason}));
    m_list->clear();
    m_list->addTopLevelItems(items);
    AutosizeColumns(*m_list, true);
    QStringList counts;
    for (const ImportOutcome outcome :
         {ImportOutcome::Added, ImportOutcome::Changed, ImportOutcome::Unchanged, ImportOutcome::Removed,
          ImportOutcome::Refused})
        counts.append(QString::number(Count(outcome)));
    QString text = FormatMessage(m_services.strings, ExchangeText::Counts, counts);
    if (!m_notice.isEmpty())
        text += '\n' + m_notice;
    m_text->setText(text);
    m_leaveOut->setVisible(m_table.mayLeaveOut && Count(ImportOutcome::Refused) > 0);
    if (m_option)
        m_option->setEnabled(true);
    Enable();
}

void frmImport::ShowProblem(const QString& problem)
{
    m_lines.clear();
    m_list->clear();
    m_text->setText(problem);
    Enable();
}

void frmImport::Enable()
{
    const int refused = Count(ImportOutcome::Refused);
    const int unchanged = Count(ImportOutcome::Unchanged);
    const bool changes = static_cast<int>(m_lines.size()) > refused + unchanged;
    m_leaveOut->setEnabled(refused > 0);
    m_import->setEnabled(changes && (refused == 0 || (m_table.mayLeaveOut && m_leaveOut->isChecked())));
}

void frmImport::Store()
{
    try {
        dao::Transaction transaction(m_services.session.Workspace());
        const auto import = m_table.import(*m_file, m_option && m_option->isChecked());
        std::vector<ImportLine> lines = import->Check();
        if (lines == m_lines) {
            import->Store();
            transaction.Commit();
            ProgramLog::Write(QStringLiteral("Imported %1 into %2").arg(m_path, m_table.name));
            m_services.session.Changes().TellOwn(m_table.name);
            accept();
            return;
        }
        m_lines = std::move(lines);
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
        return;
    }
    Show();
    m_services.prompt.ShowWarning(Text(ExchangeText::ChangedMeanwhile));
}

int frmImport::Count(ImportOutcome outcome) const
{
    return static_cast<int>(std::count_if(
        m_lines.begin(), m_lines.end(), [&](const ImportLine& line) { return line.outcome == outcome; }));
}

QString frmImport::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
