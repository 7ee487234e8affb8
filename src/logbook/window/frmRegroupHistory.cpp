#include "logbook/window/frmRegroupHistory.h"

#include "core/base/Clock.h"
#include "core/desktop/ShowWindow.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "dao/tables/RegroupActTable.h"
#include "logbook/window/RegroupTextIds.h"
#include "logbook/window/ReportReader.h"
#include "logbook/window/ReportTextIds.h"
#include "logbook/window/SearchedTable.h"

#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

namespace {

constexpr int Most = 10000; // lines
constexpr int TimeColumn = 0;
// Characters of each column at first; its share of a page.
constexpr int Widths[] = {24, 16, 18, 18, 10, 16, 20};
constexpr int Shares[] = {20, 13, 15, 15, 8, 13, 16};
constexpr int Lines = 28;

} // namespace

frmRegroupHistory::frmRegroupHistory(IDbSession& session, const IStringSource& strings, const Clock& clock,
                                     QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_strings(strings),
      m_clock(clock),
      m_reader(new ReportReader(session, strings)),
      m_table(
          new SearchedTable(Headings(strings), "lvRegroupings", RegroupText::HistoryCaption, Widths, this)),
      m_export(new TableExport(
          strings, [this] { return Content(); }, *this))
{
    m_reader->setParent(this);
    setObjectName(QStringLiteral("frmRegroupHistory"));
    setProperty("textId", RegroupText::HistoryCaption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_export);
    LoadCaptions(*this, strings);
    m_table->Sort(TimeColumn, Qt::DescendingOrder);
    resize(QSize(m_table->Width(), Lines * fontMetrics().lineSpacing()).boundedTo(screen()->availableSize()));
    connect(m_reader, &ReportReader::Failed, m_export, &TableExport::Say);
    // Who logs on next is shown nothing that he has not asked for.
    connect(&session.Changes(), &DatabaseChanges::Closing, this, [this] {
        hide();
        Forget();
    });
}

frmRegroupHistory::~frmRegroupHistory()
{
    delete m_reader; // before what it shows
}

QStringList frmRegroupHistory::Headings(const IStringSource& strings)
{
    QStringList headings;
    for (const int id : {RegroupText::Time, RegroupText::Radio, RegroupText::OldGroup, RegroupText::NewGroup,
                         RegroupText::Position, RegroupText::Operator, RegroupText::Console})
        headings.append(strings.LoadString(id));
    return headings;
}

void frmRegroupHistory::Open(qint32 addressId, const QString& callsign)
{
    Forget();
    setWindowTitle(addressId == 0 ? m_strings.LoadString(RegroupText::HistoryCaption)
                                  : FormatMessage(m_strings, RegroupText::HistoryOf, {callsign}));
    m_export->Say(m_strings.LoadString(ReportText::Reading));
    m_reader->Read([this, addressId](dao::Database& database, const std::function<bool()>&) -> Lane::Answer {
        const auto acts = dao::RegroupActTable::Newest(
            database, addressId == 0 ? std::nullopt : std::optional(addressId), Most);
        return [this, acts] { Show(acts); };
    });
    BringToScreen(*this, Activation::Take);
    m_table->TakeKeyboard();
}

void frmRegroupHistory::Show(const std::vector<dao::RegroupActRecord>& acts)
{
    QList<TableModel::Row> rows;
    for (const dao::RegroupActRecord& act : acts)
        rows.append({{SearchedTable::Shown(act.time), act.member, act.oldGroup, act.group,
                      QString::number(act.pos), act.operatorName, act.console},
                     {SearchedTable::Order(act.time), {}, {}, {}, act.pos, {}, {}}});
    m_table->Show(rows);
    m_export->Offer(true);
    m_export->Say(FormatMessage(m_strings,
                                rows.size() < Most ? RegroupText::HistoryAsOf : RegroupText::HistoryCut,
                                {QString::number(rows.size()), SearchedTable::Shown(m_clock.Now())}));
}

void frmRegroupHistory::Forget()
{
    m_reader->End();
    m_table->Show({});
    m_export->Offer(false);
    m_export->Say({});
}

TableExport::Content frmRegroupHistory::Content() const
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

void frmRegroupHistory::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

// What is being written is written; what is read nobody sees.
void frmRegroupHistory::closeEvent(QCloseEvent* event)
{
    Forget();
    QWidget::closeEvent(event);
}
