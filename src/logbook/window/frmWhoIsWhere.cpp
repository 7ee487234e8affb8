#include "logbook/window/frmWhoIsWhere.h"

#include "core/base/Clock.h"
#include "core/desktop/ShowWindow.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "logbook/query/LogLines.h"
#include "logbook/query/ShiftTextIds.h"
#include "logbook/window/ReportReader.h"
#include "logbook/window/ReportTextIds.h"
#include "logbook/window/TableModel.h"
#include "logbook/window/TextIds.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

namespace {

constexpr int DaysBack = 7;
constexpr std::chrono::seconds BetweenReadings{30};
// Characters of each column at first.
constexpr int Widths[] = {15, 13, 22, 11, 24, 24, 32, 18};
constexpr int Shares[] = {11, 9, 16, 8, 13, 13, 16, 14};
constexpr int Lines = 34;

QString Shown(const QDateTime& time)
{
    const QDateTime local = time.toLocalTime();
    return time.isValid() ? QLocale().toString(local.date(), QLocale::ShortFormat) +
                                local.toString(QStringLiteral(" HH:mm:ss"))
                          : QString();
}

// What was never heard comes before everything that was.
QVariant Order(const QDateTime& time)
{
    return time.isValid() ? time.toMSecsSinceEpoch() : qint64(-1);
}

} // namespace

frmWhoIsWhere::frmWhoIsWhere(IDbSession& session, const IStringSource& strings, const Clock& clock,
                             std::function<QStringList()> own, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_strings(strings),
      m_clock(clock),
      m_own(std::move(own)),
      m_model(new TableModel(Headings(strings), this)),
      m_sorted(new QSortFilterProxyModel(this)),
      m_reader(new ReportReader(session, strings)),
      txtSearch(new QLineEdit(this)),
      lvRadios(new QTableView(this)),
      m_export(new TableExport(
          strings, [this] { return Content(); }, *this))
{
    m_reader->setParent(this);
    setObjectName(QStringLiteral("frmWhoIsWhere"));
    setProperty("textId", ReportText::WhereCaption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    auto* layout = new QVBoxLayout(this);
    BuildSearch();
    BuildTable();
    layout->addWidget(lvRadios, 1);
    layout->addWidget(m_export);
    LoadCaptions(*this, strings);
    int width = 0;
    for (int column = 0; column < Columns; ++column) {
        lvRadios->setColumnWidth(column, Widths[column] * fontMetrics().averageCharWidth());
        width += lvRadios->columnWidth(column);
    }
    resize(QSize(width, Lines * fontMetrics().lineSpacing()).boundedTo(screen()->availableSize()));
    m_again.setInterval(BetweenReadings);
    connect(&m_again, &QTimer::timeout, this, &frmWhoIsWhere::Read);
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
    for (const int id :
         {ReportText::Callsign, ReportText::Number, ReportText::Name, ShiftText::StateColumn,
          ShiftText::SinceColumn, ReportText::LastHeard, ReportText::LastStatus, ReportText::Group})
        headings.append(strings.LoadString(id));
    return headings;
}

void frmWhoIsWhere::BuildSearch()
{
    auto* label = new QLabel(this);
    label->setProperty("textId", LogbookText::Search);
    label->setBuddy(txtSearch);
    txtSearch->setObjectName(QStringLiteral("txtSearch"));
    txtSearch->setClearButtonEnabled(true);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(txtSearch);
    dynamic_cast<QVBoxLayout*>(layout())->addLayout(row);
    connect(txtSearch, &QLineEdit::textChanged, m_sorted, &QSortFilterProxyModel::setFilterFixedString);
}

void frmWhoIsWhere::BuildTable()
{
    m_sorted->setSourceModel(m_model);
    m_sorted->setFilterKeyColumn(-1); // any
    m_sorted->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setSortRole(TableModel::SortRole);
    lvRadios->setObjectName(QStringLiteral("lvRadios"));
    lvRadios->setProperty("accessibleNameId", ReportText::WhereCaption);
    lvRadios->setModel(m_sorted);
    lvRadios->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvRadios->setSelectionMode(QAbstractItemView::SingleSelection);
    lvRadios->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvRadios->setTabKeyNavigation(false);
    lvRadios->setWordWrap(false);
    lvRadios->setAlternatingRowColors(true);
    lvRadios->setSortingEnabled(true);
    lvRadios->sortByColumn(Callsign, Qt::AscendingOrder);
    lvRadios->verticalHeader()->hide();
    lvRadios->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 4);
    lvRadios->horizontalHeader()->setHighlightSections(false);
    lvRadios->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    lvRadios->horizontalHeader()->setStretchLastSection(true);
}

void frmWhoIsWhere::Open()
{
    if (!isVisible()) {
        m_export->Say(m_strings.LoadString(ReportText::Reading));
        Read();
        m_again.start();
    }
    BringToScreen(*this, Activation::Take);
    txtSearch->setFocus();
    txtSearch->selectAll();
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

// Whoever reads it keeps place and line.
void frmWhoIsWhere::Show(const Whereabouts& whereabouts, const QDateTime& since)
{
    const QString current = lvRadios->currentIndex().siblingAtColumn(Callsign).data().toString();
    const int place = lvRadios->verticalScrollBar()->value();
    QList<TableModel::Row> rows;
    for (const Whereabouts::Radio& radio : whereabouts.Radios())
        rows.append({{radio.callsign, radio.number, radio.name,
                      m_strings.LoadString(radio.onDuty ? ReportText::OnDuty : ReportText::OffDuty),
                      Shown(radio.dutySince), Shown(radio.heard), radio.status.simplified(),
                      radio.groups.join(QStringLiteral(", "))},
                     {{}, {}, {}, {}, Order(radio.dutySince), Order(radio.heard), {}, {}}});
    m_model->Show(rows);
    for (int row = 0; !current.isEmpty() && row < m_sorted->rowCount(); ++row)
        if (m_sorted->index(row, Callsign).data().toString() == current)
            lvRadios->setCurrentIndex(m_sorted->index(row, Callsign));
    lvRadios->verticalScrollBar()->setValue(place);
    m_export->Offer(true);
    m_export->Say(FormatMessage(m_strings, ReportText::AsOf, {Shown(m_clock.Now()), Shown(since)}));
}

void frmWhoIsWhere::Forget()
{
    m_again.stop();
    m_reader->End();
    m_model->Show({});
    m_export->Offer(false);
    m_export->Say({});
}

// As it is searched and sorted.
TableExport::Content frmWhoIsWhere::Content() const
{
    TableExport::Content content{
        .texts = {.headings = m_model->Headings(),
                  .shares = {std::begin(Shares), std::end(Shares)},
                  .title = windowTitle() + QStringLiteral("  ") + Shown(m_clock.Now()),
                  .introduction = {},
                  .page = {},
                  .failure = {}},
        .rows = {},
        .csv = LogLines::CsvOf(m_model->Headings())};
    for (int row = 0; row < m_sorted->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < Columns; ++column)
            cells.append(m_sorted->index(row, column).data().toString());
        content.csv += LogLines::CsvOf(cells);
        content.rows.append(cells);
    }
    return content;
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
