#include "logbook/window/frmShiftReport.h"

#include "core/base/Clock.h"
#include "core/desktop/ShowWindow.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "logbook/window/ReportReader.h"
#include "logbook/window/ReportTextIds.h"
#include "logbook/window/TableModel.h"

#include <QDateTimeEdit>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QVBoxLayout>

namespace {

constexpr int ShiftHours = 8;
constexpr qint64 Minute = 60'000; // ms
// Characters of each column at first; what was wanted gets what is left.
constexpr int Widths[] = {18, 14, 22, 24, 8, 16, 24, 17, 14, 24, 12};
constexpr int Shares[] = {9, 10, 19, 10, 5, 10, 10, 6, 8, 8, 5};
constexpr int Lines = 36;

} // namespace

frmShiftReport::frmShiftReport(IDbSession& session, const IStringSource& strings, const Clock& clock,
                               std::function<QStringList()> own, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_strings(strings),
      m_clock(clock),
      m_own(std::move(own)),
      m_lines(strings),
      m_model(new TableModel(m_lines.Headings(), this)),
      m_reader(new ReportReader(session, strings)),
      lblSummary(new QLabel(this)),
      lvShift(new QTableView(this)),
      m_export(new TableExport(
          strings, [this] { return Content(); }, *this))
{
    m_reader->setParent(this);
    setObjectName(QStringLiteral("frmShiftReport"));
    setProperty("textId", ReportText::ShiftCaption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    lblSummary->setObjectName(QStringLiteral("lblSummary"));
    lblSummary->setTextFormat(Qt::PlainText);
    lblSummary->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    lblSummary->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    BuildPeriod();
    layout->addWidget(lblSummary);
    BuildTable();
    layout->addWidget(lvShift, 1);
    layout->addWidget(m_export);
    LoadCaptions(*this, strings);
    int width = 0;
    for (int column = 0; column < ShiftLines::Columns; ++column) {
        lvShift->setColumnWidth(column, Widths[column] * fontMetrics().averageCharWidth());
        width += lvShift->columnWidth(column);
    }
    resize(QSize(width, Lines * fontMetrics().lineSpacing()).boundedTo(screen()->availableSize()));
    connect(m_reader, &ReportReader::Failed, m_export, &TableExport::Say);
    // Who logs on next is shown nothing that he has not asked for.
    connect(&session.Changes(), &DatabaseChanges::Closing, this, [this] {
        hide();
        Forget();
    });
}

frmShiftReport::~frmShiftReport()
{
    delete m_reader; // before what it shows
}

QDateTimeEdit* frmShiftReport::TimeField(const char* name)
{
    auto* field = new QDateTimeEdit(this);
    field->setObjectName(QLatin1String(name));
    field->setCalendarPopup(true);
    return field;
}

void frmShiftReport::BuildPeriod()
{
    txtFrom = TimeField("txtFrom");
    txtTo = TimeField("txtTo");
    auto* show = new QPushButton(this);
    show->setObjectName(QStringLiteral("cmdShow"));
    show->setProperty("textId", ReportText::Show);
    auto* row = new QHBoxLayout;
    for (const auto& [textId, field] : {std::pair(ReportText::From, txtFrom), {ReportText::To, txtTo}}) {
        auto* label = new QLabel(this);
        label->setProperty("textId", textId);
        label->setBuddy(field);
        row->addWidget(label);
        row->addWidget(field);
    }
    row->addWidget(show);
    row->addStretch();
    dynamic_cast<QVBoxLayout*>(layout())->addLayout(row);
    connect(show, &QPushButton::clicked, this, &frmShiftReport::Read);
}

void frmShiftReport::BuildTable()
{
    lvShift->setObjectName(QStringLiteral("lvShift"));
    lvShift->setProperty("accessibleNameId", ReportText::Waits);
    lvShift->setModel(m_model);
    lvShift->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvShift->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvShift->setTabKeyNavigation(false);
    lvShift->setWordWrap(false);
    lvShift->setAlternatingRowColors(true);
    lvShift->verticalHeader()->hide();
    lvShift->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 4);
    lvShift->horizontalHeader()->setHighlightSections(false);
    lvShift->horizontalHeader()->setSectionResizeMode(ShiftLines::What, QHeaderView::Stretch);
    lvShift->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void frmShiftReport::Open()
{
    if (!isVisible()) {
        const QDateTime now = m_clock.Now().toLocalTime();
        const QDateTime end = now.addMSecs(Minute - now.toMSecsSinceEpoch() % Minute);
        txtFrom->setDateTime(end.addMSecs(-ShiftHours * 60 * Minute));
        txtTo->setDateTime(end);
        Read();
    }
    BringToScreen(*this, Activation::Take);
    txtFrom->setFocus();
}

void frmShiftReport::Read()
{
    const QDateTime since = txtFrom->dateTime().toUTC();
    const QDateTime until = txtTo->dateTime().toUTC();
    Forget();
    if (since >= until)
        return m_export->Say(m_strings.LoadString(ReportText::Backwards));
    m_export->Say(m_strings.LoadString(ReportText::Reading));
    m_reader->Read([this, since, until, now = LogFacts(m_strings, m_own())](
                       dao::Database& database, const std::function<bool()>& goOn) -> Lane::Answer {
        LogFacts facts = now;
        facts.ReadStatuses(database);
        const ShiftReport report = ShiftReport::Read(database, facts, since, until, goOn);
        return [this, report] { Show(report); };
    });
}

void frmShiftReport::Show(const ShiftReport& report)
{
    m_report = report;
    lblSummary->setText(m_lines.Title(report) + u'\n' + m_lines.Summary(report).join(u'\n'));
    QList<TableModel::Row> rows;
    for (const ShiftWait& wait : report.Waits())
        rows.append({m_lines.Cells(wait)});
    m_model->Show(rows);
    m_export->Offer(true);
    m_export->Say(rows.isEmpty() ? m_strings.LoadString(ReportText::NobodyWaited) : QString());
}

void frmShiftReport::Forget()
{
    m_reader->End();
    m_report = {};
    m_model->Show({});
    lblSummary->clear();
    m_export->Offer(false);
    m_export->Say({});
}

TableExport::Content frmShiftReport::Content() const
{
    TableExport::Content content{.texts = {.headings = m_lines.Headings(),
                                           .shares = {std::begin(Shares), std::end(Shares)},
                                           .title = m_lines.Title(m_report),
                                           .introduction = m_lines.Summary(m_report),
                                           .page = {},
                                           .failure = {}},
                                 .rows = {},
                                 .csv = ShiftLines::Csv(m_report)};
    for (const ShiftWait& wait : m_report.Waits())
        content.rows.append(m_lines.Cells(wait));
    return content;
}

void frmShiftReport::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

// What is being written is written; what is read nobody sees.
void frmShiftReport::closeEvent(QCloseEvent* event)
{
    m_reader->End();
    QWidget::closeEvent(event);
}
