#include "admin/frmStatusEditor.h"

#include "admin/TextIds.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/session/Registry.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "core/widgets/ListHelpers.h"
#include "core/widgets/PlainIconDelegate.h"
#include "core/widgets/PlainKey.h"
#include "dao/Workspace.h"
#include "dao/tables/RegistryTable.h"
#include "dao/tables/StatusTable.h"
#include "exchange/StatusImport.h"
#include "exchange/TableExchange.h"
#include "ui_frmStatusEditor.h"

#include <QKeyEvent>

namespace {

constexpr int Codes = 32;
constexpr int ListLines = 9;
constexpr int FieldWidth = 44; // characters

const QString InUse = QStringLiteral("on_off_duty");
const QString OnDuty = QStringLiteral("radio_onduty");
const QString OffDuty = QStringLiteral("radio_offduty");

ExchangedTable ExchangedStati(const AdminServices& services)
{
    const auto import = [services](CsvTable table, bool) {
        return std::make_unique<StatusImport>(services.session.Database(), std::move(table),
                                              services.strings);
    };
    return {
        .name = dao::StatusTable::Table,
        .file = QStringLiteral("status.csv"),
        .columns = StatusImport::Columns(),
        .import = import,
        .text = [services](int& count) { return StatusImport::Text(services.session.Database(), count); }};
}

} // namespace

frmStatusEditor::frmStatusEditor(const AdminServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmStatusEditor>()),
      m_model(new StatusModel(services.strings, this))
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    m_ui->lvStati->setModel(m_model);
    m_ui->lvStati->setIconSize(SmallIconSize(*this));
    m_ui->lvStati->setMinimumHeight(ListLines * fontMetrics().lineSpacing());
    m_ui->txtEditInDesc->setMinimumWidth(FieldWidth * fontMetrics().averageCharWidth());
    m_ui->lvStati->setItemDelegate(new PlainIconDelegate(m_ui->lvStati));
    SetFullRowSelect(*m_ui->lvStati, true);
    FillCodes();
    EnableTexts(false);
    LoadDuty();
    Try([this] { m_rows = dao::StatusTable::Open(m_services.session.Database()); });
    FillList();
    ConnectControls();
}

frmStatusEditor::~frmStatusEditor() = default;

void frmStatusEditor::FillCodes()
{
    for (QComboBox* box : {m_ui->cmbEditStatus, m_ui->cmbOnDuty, m_ui->cmbOffDuty})
        for (int code = 0; code < Codes; ++code)
            box->addItem(QString::number(code));
    m_ui->cmbEditStatus->setCurrentIndex(-1);
}

void frmStatusEditor::ConnectControls()
{
    for (QWidget* control :
         {static_cast<QWidget*>(m_ui->lvStati), static_cast<QWidget*>(m_ui->cmbEditStatus),
          static_cast<QWidget*>(m_ui->txtEditInDesc), static_cast<QWidget*>(m_ui->txtEditOutDesc),
          static_cast<QWidget*>(m_ui->chkEmergency)})
        control->installEventFilter(this);
    connect(m_ui->lvStati->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected) {
                if (!selected.isEmpty() && !m_filling)
                    m_ui->cmbEditStatus->setCurrentIndex(
                        selected.indexes().constFirst().data(StatusModel::TagRole).toInt());
            });
    connect(m_ui->lvStati, &QTreeView::clicked, this, [this](const QModelIndex& item) {
        m_ui->cmbEditStatus->setCurrentIndex(item.data(StatusModel::TagRole).toInt());
        ShowCode();
    });
    connect(m_ui->lvStati, &QTreeView::doubleClicked, this, &frmStatusEditor::EditText);
    connect(m_ui->cmbEditStatus, &QComboBox::currentIndexChanged, this, &frmStatusEditor::ShowCode);
    // Choosing the current code again rereads its texts. A new choice has just been read.
    m_justShown.setSingleShot(true);
    connect(m_ui->cmbEditStatus, &QComboBox::activated, this, [this] {
        if (!m_justShown.isActive())
            ShowCode();
    });
    connect(m_ui->Command3, &QPushButton::clicked, this, &frmStatusEditor::Set);
    connect(m_ui->Command4, &QPushButton::clicked, this, &frmStatusEditor::EditText);
    connect(m_ui->Command5, &QPushButton::clicked, this, &frmStatusEditor::Delete);
    connect(m_ui->cmdApplyDuty, &QPushButton::clicked, this, &frmStatusEditor::ApplyDuty);
    connect(m_ui->cmdImport, &QPushButton::clicked, this, &frmStatusEditor::Import);
    connect(m_ui->cmdExport, &QPushButton::clicked, this, &frmStatusEditor::Export);
    connect(m_ui->Command2, &QPushButton::clicked, this, &QDialog::reject);
}

void frmStatusEditor::LoadDuty()
{
    Try([this] {
        m_services.session.Database().ReadAhead({dao::RegistryTable::ReadingOf(InUse),
                                                 dao::RegistryTable::ReadingOf(OnDuty),
                                                 dao::RegistryTable::ReadingOf(OffDuty),
                                                 {.source = dao::StatusTable::ByCode()}});
    });
    const auto number = [this](const QString& key, const char* fallback) {
        return RegistryGet(m_services.session, key, QLatin1String(fallback)).toInt();
    };
    m_ui->chkOnOffDuty->setChecked(number(InUse, "0") == 1);
    m_ui->cmbOnDuty->setCurrentIndex(number(OnDuty, "1"));
    m_ui->cmbOffDuty->setCurrentIndex(number(OffDuty, "2"));
}

// A record that cannot be read ends the list without a message.
void frmStatusEditor::FillList()
{
    std::vector<dao::StatusRecord> rows;
    try {
        const auto stati = dao::StatusTable::OpenSnapshot(m_services.session.Database());
        for (; !stati->Eof(); stati->MoveNext())
            rows.push_back(dao::StatusTable::Read(*stati));
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("Status messages: %1").arg(QString::fromUtf8(failure.what())));
    }
    m_filling = true;
    m_model->Replace(std::move(rows));
    const int row = m_model->RowOf(m_ui->cmbEditStatus->currentIndex());
    if (row >= 0)
        m_ui->lvStati->setCurrentIndex(m_model->index(row, 0));
    m_filling = false;
    AutosizeColumns(*m_ui->lvStati, true);
}

std::optional<dao::StatusRecord> frmStatusEditor::Seek(int code)
{
    if (!m_rows)
        return std::nullopt;
    m_rows->Seek(code);
    if (m_rows->NoMatch())
        return std::nullopt;
    return dao::StatusTable::Read(*m_rows);
}

void frmStatusEditor::ShowCode()
{
    const int code = m_ui->cmbEditStatus->currentIndex();
    m_shown.reset();
    EnableTexts(code >= 0);
    if (code >= 0)
        Try([&] { m_shown = Seek(code); });
    m_ui->txtEditInDesc->setText(m_shown ? m_shown->in : QString());
    m_ui->txtEditOutDesc->setText(m_shown ? m_shown->out : QString());
    m_ui->chkEmergency->setChecked(m_shown && m_shown->emergency);
    m_justShown.start(0);
}

// Choosing a code replaces both texts: anything typed beforehand would be lost.
void frmStatusEditor::EnableTexts(bool enabled)
{
    for (QWidget* control :
         {static_cast<QWidget*>(m_ui->txtEditInDesc), static_cast<QWidget*>(m_ui->txtEditOutDesc),
          static_cast<QWidget*>(m_ui->chkEmergency), static_cast<QWidget*>(m_ui->Command3)})
        control->setEnabled(enabled);
}

void frmStatusEditor::New()
{
    m_ui->cmbEditStatus->setCurrentIndex(-1);
    m_ui->cmbEditStatus->setFocus();
    m_ui->txtEditInDesc->clear();
    m_ui->txtEditOutDesc->clear();
    m_ui->chkEmergency->setChecked(false);
}

void frmStatusEditor::EditText()
{
    if (!HasSelectedItem(*m_ui->lvStati))
        return;
    m_ui->txtEditInDesc->setFocus();
    m_ui->txtEditInDesc->end(false);
}

void frmStatusEditor::Set()
{
    const int code = m_ui->cmbEditStatus->currentIndex();
    if (code < 0 || !m_rows)
        return;
    Try([&] {
        if (Seek(code) != m_shown) {
            if (m_services.prompt.AskQuestion(Text(AdminText::StatusChangedMeanwhile))) {
                ShowCode();
                FillList();
            }
            return;
        }
        const dao::StatusRecord stored{code, m_ui->txtEditInDesc->text(), m_ui->txtEditOutDesc->text(),
                                       m_ui->chkEmergency->isChecked()};
        dao::StatusTable::Store(*m_rows, stored);
        m_shown = stored;
        FillList();
        Q_EMIT StatiChanged();
    });
}

void frmStatusEditor::Delete()
{
    const QModelIndex item = GetSelectedItem(*m_ui->lvStati);
    if (!item.isValid() || !m_services.prompt.AskQuestion(Text(AdminText::DeleteStatusQuestion)))
        return;
    Try([&] {
        if (!Seek(item.data(StatusModel::TagRole).toInt()))
            return;
        m_rows->Delete();
        m_ui->cmbEditStatus->setCurrentIndex(-1);
        FillList();
        Q_EMIT StatiChanged();
        ShowCode();
    });
}

void frmStatusEditor::ApplyDuty()
{
    const int on = m_ui->cmbOnDuty->currentIndex();
    const int off = m_ui->cmbOffDuty->currentIndex();
    if (on < 0 || off < 0)
        return;
    if (on == off) {
        m_services.prompt.ShowWarning(Text(AdminText::DutyCodesMustDiffer));
        return;
    }
    const QString inUse = m_ui->chkOnOffDuty->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    Try([&] {
        RegistryStore(m_services.session, {{InUse, inUse},
                                           {OnDuty, m_ui->cmbOnDuty->currentText()},
                                           {OffDuty, m_ui->cmbOffDuty->currentText()}});
    });
}

void frmStatusEditor::Import()
{
    const ExchangeServices services{m_services.session, m_services.prompt, m_services.strings};
    if (!TableExchange::Import(services, ExchangedStati(m_services), *this))
        return;
    FillList();
    ShowCode();
    Q_EMIT StatiChanged();
}

void frmStatusEditor::Export()
{
    TableExchange::Export({m_services.session, m_services.prompt, m_services.strings},
                          ExchangedStati(m_services), *this);
}

bool frmStatusEditor::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && HandleKey(watched, *static_cast<QKeyEvent*>(event)))
        return true;
    return QDialog::eventFilter(watched, event);
}

// Enter stores in the editing controls and edits in the list; Insert begins a new message in all of them.
bool frmStatusEditor::HandleKey(QObject* watched, const QKeyEvent& key)
{
    const bool inList = watched == m_ui->lvStati;
    if (IsPlain(key, Qt::Key_Insert))
        New();
    else if (IsPlainEnter(key) && inList)
        EditText();
    else if (IsPlainEnter(key))
        Set();
    else if (IsPlain(key, Qt::Key_Delete) && inList)
        Delete();
    else
        return false;
    return true;
}

void frmStatusEditor::Try(const std::function<void()>& change)
{
    try {
        change();
    } catch (const std::exception& failure) {
        if (m_rows)
            m_rows->CancelUpdate();
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
    }
}

QString frmStatusEditor::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
