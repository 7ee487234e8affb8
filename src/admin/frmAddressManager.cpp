#include "admin/frmAddressManager.h"

#include "admin/DirectoryDeletion.h"
#include "admin/DirectoryModel.h"
#include "admin/TextIds.h"
#include "admin/frmAddressEditor.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/desktop/ShowModal.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/Icons.h"
#include "core/widgets/ListHelpers.h"
#include "core/widgets/PlainIconDelegate.h"
#include "core/widgets/PlainKey.h"
#include "dao/tables/AddressTable.h"
#include "exchange/DirectoryImport.h"
#include "exchange/TableExchange.h"
#include "ui_frmAddressManager.h"

#include <QHeaderView>
#include <QShortcut>
#include <algorithm>

namespace {

constexpr int ListLines = 18;

ExchangedTable ExchangedDirectory(const AdminServices& services)
{
    const auto import = [services](CsvTable table, bool) {
        return std::make_unique<DirectoryImport>(
            services.session.Database(), std::move(table),
            DirectoryImport::AddressingOf(services.session, services.strings), services.strings);
    };
    return {
        .name = dao::AddressTable::Table,
        .file = QStringLiteral("directory.csv"),
        .columns = DirectoryImport::Columns(),
        .import = import,
        .text = [services](int& count) { return DirectoryImport::Text(services.session.Database(), count); }};
}

} // namespace

frmAddressManager::frmAddressManager(const AdminServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmAddressManager>()),
      m_model(new DirectoryModel(services.strings, this))
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    m_ui->lvDir->setModel(m_model);
    m_ui->lvDir->setIconSize(SmallIconSize(*this));
    m_ui->lvDir->setMinimumHeight(ListLines * fontMetrics().lineSpacing());
    m_ui->lvDir->header()->setSectionsClickable(true);
    m_ui->lvDir->header()->setSortIndicatorShown(true);
    for (QWidget* control : {static_cast<QWidget*>(m_ui->lvDir), static_cast<QWidget*>(m_ui->txtLookFor)})
        control->installEventFilter(this);
    m_ui->lvDir->setItemDelegate(new PlainIconDelegate(m_ui->lvDir));
    SetFullRowSelect(*m_ui->lvDir, true);
    ConnectControls();
}

frmAddressManager::~frmAddressManager() = default;

void frmAddressManager::ConnectControls()
{
    connect(m_ui->lvDir->header(), &QHeaderView::sectionClicked, this, &frmAddressManager::SortBy);
    connect(m_ui->lvDir, &QTreeView::doubleClicked, this, &frmAddressManager::EditSelected);
    const auto addIndividual = [this] { Edit(&frmAddressEditor::AddIndividual); };
    const auto addTalkgroup = [this] { Edit(&frmAddressEditor::AddTalkgroup); };
    connect(m_ui->Command1, &QPushButton::clicked, this, addIndividual);
    connect(m_ui->Command2, &QPushButton::clicked, this, addTalkgroup);
    connect(m_ui->cmdEdit, &QPushButton::clicked, this, &frmAddressManager::EditSelected);
    connect(m_ui->Command4, &QPushButton::clicked, this, &frmAddressManager::DeleteSelected);
    connect(m_ui->cmdImport, &QPushButton::clicked, this, &frmAddressManager::Import);
    connect(m_ui->cmdExport, &QPushButton::clicked, this, &frmAddressManager::Export);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(new QShortcut(Qt::CTRL | Qt::Key_I, this), &QShortcut::activated, this, addIndividual);
    connect(new QShortcut(Qt::CTRL | Qt::Key_G, this), &QShortcut::activated, this, addTalkgroup);
    connect(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, this, &frmAddressManager::ReloadDir);
}

void frmAddressManager::ReloadDir()
{
    for (;;) {
        try {
            ReadOnce();
            return;
        } catch (const std::exception& failure) {
            ProgramLog::Write(QStringLiteral("Directory: %1").arg(QString::fromUtf8(failure.what())));
            if (WasGivenUp(failure))
                return;
        }
        if (!m_services.prompt.AskQuestion(m_services.strings.LoadString(AdminText::DirectoryRetry)))
            return;
    }
}

// The current entry stays current if it is still listed.
void frmAddressManager::ReadOnce()
{
    const QModelIndex current = GetSelectedItem(*m_ui->lvDir);
    const qint32 id = current.data(DirectoryModel::TagRole).toInt();
    DirectoryList list;
    std::exception_ptr failure;
    try {
        ReadDirectory(m_services.session, m_sortByCallsign ? DirectoryOrder::Callsign : DirectoryOrder::Ident,
                      m_ui->txtLookFor->text(), list);
    } catch (const std::exception& problem) {
        if (WasGivenUp(problem))
            throw; // what is shown stays
        failure = std::current_exception();
    }
    m_model->Replace(std::move(list));
    AutosizeColumns(*m_ui->lvDir, true);
    m_ui->lvDir->header()->setSortIndicator(
        m_sortByCallsign ? DirectoryModel::Callsign : DirectoryModel::Ident, Qt::AscendingOrder);
    const int row = current.isValid() ? m_model->RowOf(id) : -1;
    if (row >= 0)
        m_ui->lvDir->setCurrentIndex(m_model->index(row, 0));
    if (failure)
        std::rethrow_exception(failure);
}

void frmAddressManager::SortBy(int column)
{
    const bool byCallsign = column == DirectoryModel::Callsign;
    m_ui->lvDir->header()->setSortIndicator(column, Qt::AscendingOrder);
    if (byCallsign == m_sortByCallsign)
        return;
    m_sortByCallsign = byCallsign;
    ReloadDir();
}

void frmAddressManager::Edit(void (frmAddressEditor::*prepare)())
{
    frmAddressEditor editor(m_services);
    (editor.*prepare)();
    Run(editor);
}

void frmAddressManager::EditSelected()
{
    const QModelIndex item = GetSelectedItem(*m_ui->lvDir);
    if (!item.isValid())
        return;
    frmAddressEditor editor(m_services);
    if (editor.EditAddress(item.data(DirectoryModel::TagRole).toInt(),
                           item.data(DirectoryModel::IconKeyRole).toString()))
        Run(editor);
}

void frmAddressManager::Run(frmAddressEditor& editor)
{
    if (ShowModal(editor, *this) != QDialog::Accepted)
        return;
    ReloadDir();
    m_directoryChanged = true;
}

void frmAddressManager::DeleteSelected()
{
    QModelIndexList rows = m_ui->lvDir->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return;
    std::sort(rows.begin(), rows.end());
    std::vector<DeletionItem> items;
    for (const QModelIndex& row : rows)
        items.push_back({row.data(DirectoryModel::TagRole).toInt(), row.data().toString()});
    if (DeleteEntries(m_services, items))
        m_directoryChanged = true;
    if (m_directoryChanged)
        ReloadDir();
}

void frmAddressManager::Import()
{
    const ExchangeServices services{m_services.session, m_services.prompt, m_services.strings};
    if (!TableExchange::Import(services, ExchangedDirectory(m_services), *this))
        return;
    m_directoryChanged = true;
    ReloadDir();
}

void frmAddressManager::Export()
{
    TableExchange::Export({m_services.session, m_services.prompt, m_services.strings},
                          ExchangedDirectory(m_services), *this);
}

// The main window's lists are up to date before this window makes way for them.
void frmAddressManager::done(int result)
{
    if (m_directoryChanged) {
        m_directoryChanged = false;
        Q_EMIT DirectoryChanged();
    }
    QDialog::done(result);
}

bool frmAddressManager::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && HandleKey(watched, *static_cast<QKeyEvent*>(event)))
        return true;
    return QDialog::eventFilter(watched, event);
}

// Enter searches in the search box and edits in the list, where Delete deletes.
bool frmAddressManager::HandleKey(QObject* watched, const QKeyEvent& key)
{
    const bool inList = watched == m_ui->lvDir;
    if (IsPlainEnter(key) && inList)
        EditSelected();
    else if (IsPlainEnter(key))
        ReloadDir();
    else if (IsPlain(key, Qt::Key_Delete) && inList)
        DeleteSelected();
    else
        return false;
    return true;
}
