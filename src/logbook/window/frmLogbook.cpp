#include "logbook/window/frmLogbook.h"

#include "core/base/Clock.h"
#include "core/desktop/ShowWindow.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "logbook/window/ExportDialogs.h"
#include "logbook/window/LogbookExport.h"
#include "logbook/window/LogbookFeed.h"
#include "logbook/window/LogbookFilterBar.h"
#include "logbook/window/LogbookModel.h"
#include "logbook/window/TextIds.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

namespace {

// Characters of each column at first; the text gets what is left.
constexpr int Widths[] = {31, 10, 20, 30, 30, 45, 12, 12};
constexpr int Lines = 34;

} // namespace

frmLogbook::frmLogbook(IDbSession& session, const IStringSource& strings, const Clock& clock,
                       std::function<QStringList()> own, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_strings(strings),
      m_own(std::move(own)),
      m_model(new LogbookModel(strings, this)),
      m_feed(new LogbookFeed(session, strings, *m_model)),
      m_export(new LogbookExport(session, strings)),
      m_filters(new LogbookFilterBar(strings, clock.Now().toLocalTime(), this)),
      lvLogbook(new QTableView(this)),
      lblState(new QLabel(this)),
      chkFollow(new QCheckBox(this)),
      m_bar(new QProgressBar(this))
{
    m_feed->setParent(this);
    m_export->setParent(this);
    setObjectName(QStringLiteral("frmLogbook"));
    setProperty("textId", LogbookText::Caption);
    setWindowIcon(LoadIcon(QStringLiteral("veltorkyn")));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_filters);
    layout->addWidget(lvLogbook);
    BuildTable();
    BuildButtons();
    LoadCaptions(*this, strings);
    const int character = fontMetrics().averageCharWidth();
    int width = 0;
    for (int column = 0; column < LogbookLine::Columns; ++column) {
        lvLogbook->setColumnWidth(column, Widths[column] * character);
        width += Widths[column] * character;
    }
    resize(QSize(width, Lines * fontMetrics().lineSpacing()).boundedTo(screen()->availableSize()));

    connect(m_filters, &LogbookFilterBar::FilterChanged, this, &frmLogbook::Search);
    connect(m_filters, &LogbookFilterBar::TimeChosen, this, [this](const QDateTime& time) {
        SetFollowing(false);
        m_feed->GoTo(time);
    });
    ConnectFeed();
    ConnectExport();
    // Who logs on next is shown nothing that he has not asked for.
    connect(&session.Changes(), &DatabaseChanges::Closing, this, [this] {
        hide();
        m_export->Cancel();
        m_feed->End();
    });
}

frmLogbook::~frmLogbook()
{
    delete m_export; // before the lines that it is about
    delete m_feed;
}

void frmLogbook::BuildTable()
{
    lvLogbook->setObjectName(QStringLiteral("lvLogbook"));
    lvLogbook->setProperty("accessibleNameId", LogbookText::Lines);
    lvLogbook->setModel(m_model);
    lvLogbook->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvLogbook->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvLogbook->setTabKeyNavigation(false);
    lvLogbook->setWordWrap(false);
    lvLogbook->setAlternatingRowColors(true);
    lvLogbook->verticalHeader()->hide();
    lvLogbook->verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + 4);
    lvLogbook->horizontalHeader()->setHighlightSections(false);
    lvLogbook->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    lvLogbook->horizontalHeader()->setSectionResizeMode(LogbookLine::Text, QHeaderView::Stretch);
    const QScrollBar* bar = lvLogbook->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, &frmLogbook::ReadOn);
    connect(bar, &QScrollBar::rangeChanged, this, &frmLogbook::ReadOn);
}

QPushButton* frmLogbook::Button(const char* name, int textId)
{
    auto* button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setProperty("textId", textId);
    button->setAutoDefault(false);
    return button;
}

void frmLogbook::BuildButtons()
{
    lblState->setObjectName(QStringLiteral("lblState"));
    lblState->setTextFormat(Qt::PlainText);
    lblState->setWordWrap(true);
    chkFollow->setObjectName(QStringLiteral("chkFollow"));
    chkFollow->setProperty("textId", LogbookText::Follow);
    chkFollow->setChecked(true);
    m_bar->setObjectName(QStringLiteral("barProgress"));
    m_bar->setProperty("accessibleNameId", LogbookText::Progress);
    cmdNewest = Button("cmdNewest", LogbookText::Newest);
    cmdCsv = Button("cmdExportCsv", LogbookText::ExportCsv);
    cmdPdf = Button("cmdExportPdf", LogbookText::ExportPdf);
    cmdPrint = Button("cmdPrint", LogbookText::Print);
    cmdCancel = Button("cmdCancel", LogbookText::Cancel);
    cmdClose = Button("cmdClose", LogbookText::Close);
    auto* state = new QHBoxLayout;
    state->addWidget(lblState, 1);
    state->addWidget(m_bar);
    state->addWidget(cmdCancel);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(chkFollow);
    buttons->addWidget(cmdNewest);
    buttons->addStretch();
    for (QPushButton* button : {cmdCsv, cmdPdf, cmdPrint, cmdClose})
        buttons->addWidget(button);
    auto* rows = dynamic_cast<QVBoxLayout*>(layout());
    rows->addLayout(state);
    rows->addLayout(buttons);
    ShowExport(false);

    connect(chkFollow, &QCheckBox::toggled, this, &frmLogbook::SetFollowing);
    connect(cmdNewest, &QPushButton::clicked, this, &frmLogbook::Search);
    connect(
        cmdCsv, &QPushButton::clicked, this, [this] { AskForFile(false); });
    connect(cmdPdf, &QPushButton::clicked, this, [this] { AskForFile(true); });
    connect(cmdPrint, &QPushButton::clicked, this, &frmLogbook::AskForPrinter);
    connect(cmdCancel, &QPushButton::clicked, m_export, &LogbookExport::Cancel);
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
}

void frmLogbook::ConnectFeed()
{
    connect(m_feed, &LogbookFeed::StateChanged, this, &frmLogbook::ShowState);
    connect(m_feed, &LogbookFeed::Failed, this, &frmLogbook::Say);
    connect(m_feed, &LogbookFeed::AddedAbove, this, &frmLogbook::KeepInPlace);
    connect(m_feed, &LogbookFeed::WentTo, this, [this](int row) {
        if (row < 0)
            Say(m_strings.LoadString(LogbookText::NothingSince));
        Select(std::max(row, 0));
    });
}

void frmLogbook::ConnectExport()
{
    connect(m_export, &LogbookExport::Progress, this, [this](int percent, qlonglong lines) {
        m_bar->setValue(percent);
        Say(FormatMessage(m_strings, LogbookText::Exporting, {QLocale().toString(lines)}));
    });
    connect(m_export, &LogbookExport::Finished, this, [this](qlonglong lines) {
        ShowExport(false);
        const QString count = QLocale().toString(lines);
        Say(m_export->Of() == LogbookExport::Target::Paper
                ? FormatMessage(m_strings, LogbookText::Printed, {count})
                : FormatMessage(m_strings, LogbookText::Exported, {count, m_export->File()}));
    });
    connect(m_export, &LogbookExport::Cancelled, this, [this] {
        ShowExport(false);
        Say(m_strings.LoadString(m_export->Of() == LogbookExport::Target::Paper
                                     ? LogbookText::PrintCancelled
                                     : LogbookText::ExportCancelled));
    });
    connect(m_export, &LogbookExport::Failed, this, [this](const QString& text) {
        ShowExport(false);
        Say(text);
    });
}

void frmLogbook::Open()
{
    if (!isVisible())
        Search();
    BringToScreen(*this, Activation::Take);
    m_filters->FocusSearch();
}

void frmLogbook::Search()
{
    m_feed->Follow(chkFollow->isChecked());
    m_feed->Show(m_filters->Filter(), m_own());
}

void frmLogbook::SetFollowing(bool on)
{
    chkFollow->setChecked(on);
    m_feed->Follow(on);
}

void frmLogbook::ShowState()
{
    if (m_export->IsRunning())
        return;
    const int lines = m_model->rowCount();
    const QString count = QLocale().toString(lines);
    const QDateTime back = m_feed->LookedBackTo();
    if (m_feed->IsSearching())
        Say(FormatMessage(
            m_strings, LogbookText::Searching,
            {back.isValid() ? QLocale().toString(back.toLocalTime(), QLocale::ShortFormat) : QString()}));
    else if (lines == 0)
        Say(m_strings.LoadString(LogbookText::Nothing));
    else
        Say(FormatMessage(m_strings, m_feed->IsComplete() ? LogbookText::AllShown : LogbookText::MoreBelow,
                          {count}));
}

void frmLogbook::Say(const QString& text)
{
    lblState->setText(text);
}

// Near an end of what is there.
void frmLogbook::ReadOn()
{
    const QScrollBar* bar = lvLogbook->verticalScrollBar();
    if (m_model->IsEmpty())
        return;
    if (bar->maximum() - bar->value() < bar->pageStep() * 2)
        m_feed->ShowOlder();
    if (bar->value() == 0 && !m_feed->IsFollowing() && sender() == bar && bar->maximum() > 0)
        m_feed->ShowNewer();
}

// Whoever reads further down goes on reading the same lines.
void frmLogbook::KeepInPlace(int linesAbove)
{
    QScrollBar* bar = lvLogbook->verticalScrollBar();
    if (bar->value() > 0 || !m_feed->IsFollowing())
        bar->setValue(bar->value() + linesAbove);
}

void frmLogbook::Select(int row)
{
    const QModelIndex index = m_model->index(row, 0);
    lvLogbook->setCurrentIndex(index);
    lvLogbook->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

void frmLogbook::AskForFile(bool pdf)
{
    const LogFilter filter = m_feed->Filter(); // what is shown, whatever is typed meanwhile
    ExportDialogs::AskForFile(*this, m_strings, pdf, [this, pdf, filter](const QString& file) {
        try {
            m_export->Begin(pdf ? LogbookExport::Target::Pdf : LogbookExport::Target::Csv, file, nullptr,
                            filter, m_feed->Facts());
            ShowExport(true);
        } catch (const std::exception& failure) {
            Say(DescribeError(failure, m_strings));
        }
    });
}

void frmLogbook::AskForPrinter()
{
    ExportDialogs::AskForPrinter(
        *this,
        [this, filter = m_feed->Filter()](const auto& printer) {
            try {
                m_export->Begin(LogbookExport::Target::Paper, {}, printer, filter, m_feed->Facts());
                ShowExport(true);
            } catch (const std::exception& failure) {
                Say(DescribeError(failure, m_strings));
            }
        });
}

void frmLogbook::ShowExport(bool running)
{
    m_bar->setVisible(running);
    cmdCancel->setVisible(running);
    m_bar->setValue(0);
    for (QPushButton* button : {cmdCsv, cmdPdf, cmdPrint})
        button->setEnabled(!running);
}

void frmLogbook::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

// An export goes on; what is searched for nobody sees does not.
void frmLogbook::closeEvent(QCloseEvent* event)
{
    m_feed->End();
    QWidget::closeEvent(event);
}
