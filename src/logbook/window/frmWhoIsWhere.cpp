#include "logbook/window/frmWhoIsWhere.h"

#include "core/base/Clock.h"
#include "core/desktop/ShowWindow.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "logbook/query/ShiftTextIds.h"
#include "logbook/window/RegroupTextIds.h"
#include "logbook/window/ReportReader.h"
#include "logbook/window/ReportTextIds.h"
#include "logbook/window/SearchedTable.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace {

constexpr int DaysBack = 7;
constexpr std::chrono::seconds BetweenReadings{30};
// Characters of each column at first.
constexpr int Widths[] = {14, 13, 20, 11, 26, 26, 24, 16, 30};
constexpr int Shares[] = {10, 8, 13, 8, 12, 12, 13, 10, 14};
constexpr int Lines = 34;

} // namespace

frmWhoIsWhere::frmWhoIsWhere(IDbSession& session, const IStringSource& strings, const Clock& clock,
                             std::function<QStringList()> own, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_strings(strings),
      m_clock(clock),
      m_own(std::move(own)),
      m_reader(new ReportReader(session, strings)),
      m_table(new SearchedTable(Headings(strings), "lvRadios", ReportText::WhereCaption, Widths, this)),
      cmdRegroupings(new QPushButton(this)),
      m_export(new TableExport(
          strings, [this] { return Content(); }, *this))
{
    m_reader->setParent(this);
    setObjectName(QStringLiteral("frmWhoIsWhere"));
    setProperty("textId", ReportText::WhereCaption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    auto* layout = new QVBoxLayout(this);
    cmdRegroupings->setObjectName(QStringLiteral("cmdRegroupings"));
    cmdRegroupings->setProperty("textId", RegroupText::HistoryButton);
    cmdRegroupings->setEnabled(false);
    m_table->SearchRow().addWidget(cmdRegroupings);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_export);
    LoadCaptions(*this, strings);
    resize(QSize(m_table->Width(), Lines * fontMetrics().lineSpacing()).boundedTo(screen()->availableSize()));
    m_again.setInterval(BetweenReadings);
    connect(&m_again, &QTimer::timeout, this, &frmWhoIsWhere::Read);
    connect(cmdRegroupings, &QPushButton::clicked, this, &frmWhoIsWhere::OpenHistory);
    connect(m_table, &SearchedTable::CurrentChanged, this,
            [this] { cmdRegroupings->setEnabled(m_table->CurrentRow() >= 0); });
    connect(m_reader, &ReportReader::Failed, m_export, &TableExport::Say);
    // Who logs on next is shown nothing that he has not asked for.
    connect(&session.Changes(), &DatabaseChanges::Closing, this, [this] {
        hide();
        Forget();
    });
}

frmWhoIsWhere::~frmWhoIsWhere()
{
    delete m_reader; // before what it shows
}

QStringList frmWhoIsWhere::Headings(const IStringSource& strings)
{
    QStringList headings;
    for (const int id : {ReportText::Callsign, ReportText::Number, ReportText::Name, ShiftText::StateColumn,
                         ShiftText::SinceColumn, ReportText::LastHeard, ReportText::LastStatus,
                         ReportText::Group, RegroupText::MovedBy})
        headings.append(strings.LoadString(id));
    return headings;
}

void frmWhoIsWhere::OpenHistory()
{
    const int row = m_table->CurrentRow();
    if (row < 0)
        return;
    const auto [id, callsign] = m_shown[static_cast<std::size_t>(row)];
    Q_EMIT HistoryRequested(id, callsign);
}

void frmWhoIsWhere::Open()
{
    if (!isVisible()) {
        m_export->Say(m_strings.LoadString(ReportText::Reading));
        Read();
        m_again.start();
    }
    BringToScreen(*this, Activation::Take);
    m_table->TakeKeyboard();
}

void frmWhoIsWhere::Read()
{
    if (m_reader->IsReading())
        return; // a long log is read to its end
    const QDateTime since = m_clock.Now().toUTC().addDays(-DaysBack);
    m_reader->Read([this, since, now = LogFacts(m_strings, m_own())](
                       dao::Database& database, const std::function<bool()>& goOn) -> Lane::Answer {
        LogFacts facts = now;
        facts.ReadStatuses(database);
        const Whereabouts whereabouts = Whereabouts::Read(database, facts, since, goOn);
        return [this, whereabouts, since] { Show(whereabouts, since); };
    });
}

void frmWhoIsWhere::Show(const Whereabouts& whereabouts, const QDateTime& since)
{
    QList<TableModel::Row> rows;
    m_shown.clear();
    for (const Whereabouts::Radio& radio : whereabouts.Radios()) {
        QStringList groups;
        QStringList movers;
        for (const Whereabouts::Group& group : radio.groups) {
            groups.append(group.callsign);
            if (group.movedAt.isValid())
                movers.append(FormatMessage(m_strings, RegroupText::MovedByAt,
                                            {group.movedBy, SearchedTable::Shown(group.movedAt)}));
        }
        rows.append({{radio.callsign, radio.number, radio.name,
                      m_strings.LoadString(radio.onDuty ? ReportText::OnDuty : ReportText::OffDuty),
                      SearchedTable::Shown(radio.dutySince), SearchedTable::Shown(radio.heard),
                      radio.status.simplified(), groups.join(QStringLiteral(", ")),
                      movers.join(QStringLiteral("; "))},
                     {{},
                      {},
                      {},
                      {},
                      SearchedTable::Order(radio.dutySince),
                      SearchedTable::Order(radio.heard),
                      {},
                      {},
                      {}}});
        m_shown.emplace_back(radio.id, radio.callsign);
    }
    m_table->Show(rows);
    m_export->Offer(true);
    m_export->Say(FormatMessage(m_strings, ReportText::AsOf,
                                {SearchedTable::Shown(m_clock.Now()), SearchedTable::Shown(since)}));
}

void frmWhoIsWhere::Forget()
{
    m_again.stop();
    m_reader->End();
    m_table->Show({});
    m_export->Offer(false);
    m_export->Say({});
}

TableExport::Content frmWhoIsWhere::Content() const
{
    return {.texts = {.headings = m_table->Headings(),
                      .shares = {std::begin(Shares), std::end(Shares)},
                      .title = windowTitle() + QStringLiteral("  ") + SearchedTable::Shown(m_clock.Now()),
                      .introduction = {},
                      .page = {},
                      .failure = {}},
            .rows = m_table->Cells(),
            .csv = m_table->Csv()};
}

void frmWhoIsWhere::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

// What is being written is written; what is read nobody sees.
void frmWhoIsWhere::closeEvent(QCloseEvent* event)
{
    Forget();
    QWidget::closeEvent(event);
}
