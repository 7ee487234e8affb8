#include "health/frmDiagnostics.h"

#include "core/base/Clock.h"
#include "core/desktop/ShowWindow.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "health/HealthCollector.h"
#include "health/SupportReport.h"
#include "health/TextIds.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr std::chrono::seconds BetweenLooks{1};
constexpr int ItemWidth = 30; // characters
constexpr int ValueWidth = 60;
constexpr int Lines = 34;

} // namespace

frmDiagnostics::frmDiagnostics(HealthCollector& collector, const IStringSource& strings, const Clock& clock,
                               QString stateFolder, Lane::Kind lane, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_collector(collector),
      m_strings(strings),
      m_clock(clock),
      m_stateFolder(std::move(stateFolder)),
      lvHealth(new QTreeWidget(this)),
      chkWithTexts(new QCheckBox(this)),
      cmdSaveReport(new QPushButton(this)),
      lblOutcome(new QLabel(this)),
      m_lane(lane)
{
    setObjectName(QStringLiteral("frmDiagnostics"));
    setProperty("textId", HealthText::Caption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    new QVBoxLayout(this);
    BuildList();
    BuildButtons();
    LoadCaptions(*this, strings);
    const int character = fontMetrics().averageCharWidth();
    resize(QSize((ItemWidth + ValueWidth) * character, Lines * fontMetrics().lineSpacing())
               .boundedTo(screen()->availableSize()));
    m_again.setInterval(BetweenLooks);
    connect(&m_again, &QTimer::timeout, this, &frmDiagnostics::Look);
}

void frmDiagnostics::BuildList()
{
    lvHealth->setObjectName(QStringLiteral("lvHealth"));
    lvHealth->setProperty("accessibleNameId", HealthText::Caption);
    lvHealth->setHeaderLabels(
        {m_strings.LoadString(HealthText::Item), m_strings.LoadString(HealthText::Value)});
    lvHealth->setRootIsDecorated(false);
    lvHealth->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lvHealth->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvHealth->setAlternatingRowColors(true);
    lvHealth->header()->setStretchLastSection(true);
    layout()->addWidget(lvHealth);
}

void frmDiagnostics::BuildButtons()
{
    chkWithTexts->setObjectName(QStringLiteral("chkWithTexts"));
    chkWithTexts->setProperty("textId", HealthText::WithTexts);
    lblOutcome->setObjectName(QStringLiteral("lblOutcome"));
    lblOutcome->setWordWrap(true);
    lblOutcome->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* copy = new QPushButton(this);
    copy->setObjectName(QStringLiteral("cmdCopyHealth"));
    copy->setProperty("textId", HealthText::Copy);
    cmdSaveReport->setObjectName(QStringLiteral("cmdSaveReport"));
    cmdSaveReport->setProperty("textId", HealthText::SaveReport);
    auto* closeButton = new QPushButton(this);
    closeButton->setObjectName(QStringLiteral("cmdCloseHealth"));
    closeButton->setProperty("textId", HealthText::Close);
    auto* row = new QHBoxLayout;
    row->addWidget(cmdSaveReport);
    row->addWidget(chkWithTexts);
    row->addStretch();
    row->addWidget(copy);
    row->addWidget(closeButton);
    auto* all = dynamic_cast<QVBoxLayout*>(layout());
    all->addWidget(lblOutcome);
    all->addLayout(row);
    connect(copy, &QPushButton::clicked, this, &frmDiagnostics::CopySelected);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);
    connect(cmdSaveReport, &QPushButton::clicked, this, &frmDiagnostics::SaveReport);
}

void frmDiagnostics::Open()
{
    if (!isVisible()) {
        Say({});
        Look();
        lvHealth->resizeColumnToContents(0);
        m_again.start();
    }
    BringToScreen(*this, Activation::Take);
    lvHealth->setFocus();
}

void frmDiagnostics::Look()
{
    m_collector.AskSlow();
    Show(HealthLines(m_collector.Facts(), m_strings));
}

// Whoever reads it keeps place and line: only what is another text is written.
void frmDiagnostics::Show(const QList<HealthLine>& lines)
{
    m_lines = lines;
    while (lvHealth->topLevelItemCount() > lines.size())
        delete lvHealth->topLevelItem(lvHealth->topLevelItemCount() - 1);
    for (int row = 0; row < lines.size(); ++row) {
        QTreeWidgetItem* item = lvHealth->topLevelItem(row);
        if (item == nullptr)
            item = new QTreeWidgetItem(lvHealth);
        const HealthLine& line = lines[row];
        if (item->text(0) != line.item)
            item->setText(0, line.item);
        if (item->text(1) != line.value) {
            item->setText(1, line.value);
            item->setToolTip(1, line.value);
        }
        QFont font = lvHealth->font();
        font.setBold(line.isHeading);
        if (item->font(0) != font)
            item->setFont(0, font);
    }
    if (lvHealth->currentItem() == nullptr)
        lvHealth->setCurrentItem(lvHealth->topLevelItem(0));
}

// Without a choice of several all of it.
void frmDiagnostics::CopySelected()
{
    QList<HealthLine> chosen;
    for (int row = 0; row < m_lines.size(); ++row)
        if (lvHealth->topLevelItem(row)->isSelected())
            chosen.append(m_lines[row]);
    QApplication::clipboard()->setText(HealthReport(chosen.size() > 1 ? chosen : m_lines));
}

void frmDiagnostics::SaveReport()
{
    const QString name = QStringLiteral("veltorkyn-%1.txt")
                             .arg(m_clock.Now().toLocalTime().toString(QStringLiteral("yyyyMMdd-HHmm")));
    QFileDialog picker(this, m_strings.LoadString(HealthText::SaveReport).remove(u'&'), QDir::homePath(),
                       m_strings.LoadString(HealthText::ReportFilter));
    picker.setObjectName(QStringLiteral("fileDialog"));
    picker.setAcceptMode(QFileDialog::AcceptSave);
    picker.selectFile(name);
    if (picker.exec() != QDialog::Accepted || picker.selectedFiles().isEmpty())
        return;
    const QString path = picker.selectedFiles().constFirst();
    const SupportReport report{HealthReport(HealthLines(m_collector.Facts(), m_strings)), m_stateFolder,
                               chkWithTexts->isChecked(), m_clock.Now()};
    cmdSaveReport->setEnabled(false);
    Say(m_strings.LoadString(HealthText::Saving));
    m_lane.Do([this, report, path]() -> Lane::Answer {
        QString problem;
        try {
            report.Write(path);
        } catch (const std::exception& failure) {
            problem = QString::fromUtf8(failure.what());
        }
        return [this, path, problem] {
            cmdSaveReport->setEnabled(true);
            Say(problem.isEmpty() ? FormatMessage(m_strings, HealthText::Saved, {path})
                                  : FormatMessage(m_strings, HealthText::NotSaved, {path, problem}));
        };
    });
}

void frmDiagnostics::Say(const QString& text)
{
    lblOutcome->setText(text);
    lblOutcome->setVisible(!text.isEmpty());
}

void frmDiagnostics::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy))
        CopySelected();
    else if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void frmDiagnostics::closeEvent(QCloseEvent* event)
{
    m_again.stop();
    QWidget::closeEvent(event);
}
