#include "admin/frmAddressEditor.h"

#include "admin/TextIds.h"
#include "core/desktop/Prompt.h"
#include "core/session/DatabaseChanges.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/texts/Validation.h"
#include "core/widgets/Captions.h"
#include "dao/Workspace.h"
#include "dao/tables/RegroupTable.h"
#include "radio/facade/Map27Executive.h"
#include "ui_frmAddressEditor.h"

#include <algorithm>

namespace {

constexpr int FieldWidth = 36;   // characters
constexpr int PositionLines = 5; // of the list of positions, shown at once

} // namespace

frmAddressEditor::frmAddressEditor(const AdminServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmAddressEditor>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    for (int position = 1; position <= dao::AddressTable::LastPosition; ++position)
        m_ui->lsPos->addItem(Text(AdminText::FirstPosition + position - 1));
    m_ui->lsPos->setCurrentRow(0);
    m_ui->lsPos->setFixedHeight(PositionLines * m_ui->lsPos->sizeHintForRow(0) +
                                2 * m_ui->lsPos->frameWidth());
    m_ui->txtCallsign->setMinimumWidth(FieldWidth * fontMetrics().averageCharWidth());
    connect(m_ui->chkDynamic, &QCheckBox::toggled, this, &frmAddressEditor::DynamicToggled);
    connect(m_ui->cmdUpdate, &QPushButton::clicked, this, &frmAddressEditor::Store);
    connect(m_ui->Command2, &QPushButton::clicked, this, &QDialog::reject);
}

frmAddressEditor::~frmAddressEditor() = default;

dao::EntryKind frmAddressEditor::Kind() const
{
    const bool individual = m_mode == Mode::AddIndividual || m_mode == Mode::EditIndividual;
    return individual ? dao::EntryKind::Individual : dao::EntryKind::Talkgroup;
}

void frmAddressEditor::AddIndividual()
{
    Prepare(Mode::AddIndividual);
}

void frmAddressEditor::AddTalkgroup()
{
    Prepare(Mode::AddTalkgroup);
}

bool frmAddressEditor::EditAddress(qint32 id, const QString& iconKey)
{
    m_id = id;
    Prepare(iconKey.contains(QLatin1String("talkgroup")) ? Mode::EditTalkgroup : Mode::EditIndividual);
    return LoadEntry();
}

void frmAddressEditor::Prepare(Mode mode)
{
    m_mode = mode;
    const bool individual = Kind() == dao::EntryKind::Individual;
    setWindowTitle(Text(mode == Mode::AddIndividual    ? AdminText::AddIndividual
                        : mode == Mode::AddTalkgroup   ? AdminText::AddTalkgroup
                        : mode == Mode::EditIndividual ? AdminText::EditIndividual
                                                       : AdminText::EditTalkgroup));
    m_ui->cmdUpdate->setText(Text(Editing() ? AdminText::Update : AdminText::Add));
    EnableKeyFields(true);
    for (QWidget* widget : {static_cast<QWidget*>(m_ui->lblName), static_cast<QWidget*>(m_ui->txtName)})
        widget->setVisible(individual);
    m_ui->txtName->setEnabled(individual);
    for (QWidget* widget : {static_cast<QWidget*>(m_ui->lblPos), static_cast<QWidget*>(m_ui->lsPos)})
        widget->setVisible(!individual);
    m_ui->lsPos->setEnabled(!individual);
    m_ui->txtCallsign->setFocus();
}

void frmAddressEditor::EnableKeyFields(bool enabled)
{
    for (QWidget* widget : {static_cast<QWidget*>(m_ui->txtCallsign), static_cast<QWidget*>(m_ui->txtIdent),
                            static_cast<QWidget*>(m_ui->chkDynamic), static_cast<QWidget*>(m_ui->lsPos)})
        widget->setEnabled(enabled);
}

// Reads the entry and shows it; the key fields of one that takes part in dynamic regrouping cannot be edited.
bool frmAddressEditor::LoadEntry()
{
    try {
        m_rows = dao::AddressTable::OpenDynaset(m_services.session.Database(), Kind());
        if (!dao::AddressTable::Find(*m_rows, m_id)) {
            m_services.prompt.ShowWarning(Text(AdminText::EntryNotFound));
            return false;
        }
        const dao::AddressRecord entry = dao::AddressTable::Read(*m_rows);
        m_ui->txtCallsign->setText(entry.callsign);
        m_ui->txtIdent->setText(entry.ident);
        m_ui->txtName->setText(entry.name);
        m_ui->txtNote->setText(entry.note);
        m_ui->chkDynamic->setChecked(entry.dynamic);
        m_ui->lsPos->setCurrentRow(std::clamp(entry.position, 1, dao::AddressTable::LastPosition) - 1);
        if (dao::RegroupTable::Holds(m_services.session.Database(), m_id))
            EnableKeyFields(false);
        return true;
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
        return false;
    }
}

void frmAddressEditor::DynamicToggled(bool checked)
{
    m_ui->lblPos->setEnabled(checked);
    m_ui->lsPos->setEnabled(checked && m_ui->txtIdent->isEnabled());
}

dao::AddressRecord frmAddressEditor::Entered() const
{
    dao::AddressRecord entry;
    entry.kind = Kind();
    entry.callsign = m_ui->txtCallsign->text();
    entry.ident = m_ui->txtIdent->text();
    entry.name = m_ui->txtName->text();
    entry.note = m_ui->txtNote->text();
    entry.dynamic = m_ui->chkDynamic->isChecked();
    entry.position = m_ui->lsPos->currentRow() + 1;
    return entry;
}

bool frmAddressEditor::IsValid(const dao::AddressRecord& entry)
{
    const int callsignProblem = ProblemOfCallsign(entry);
    const int problem = callsignProblem != 0 ? callsignProblem : ProblemOfName(entry);
    if (problem == 0)
        return true;
    m_services.prompt.ShowWarning(Text(problem));
    (callsignProblem != 0 ? m_ui->txtCallsign : m_ui->txtName)->setFocus();
    return false;
}

bool frmAddressEditor::CompleteIdent()
{
    try {
        m_ui->txtIdent->setText(m_services.executive.MakeFullAddress(m_ui->txtIdent->text()));
        return true;
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
        m_ui->txtIdent->setFocus();
        m_ui->txtIdent->selectAll();
        return false;
    }
}

void frmAddressEditor::Store()
{
    m_ui->txtCallsign->setText(m_ui->txtCallsign->text().trimmed());
    m_ui->txtName->setText(m_ui->txtName->text().trimmed());
    if (!IsValid(Entered()) || !CompleteIdent())
        return;
    try {
        const bool protectedNow = m_ui->txtIdent->isEnabled() && Editing() &&
                                  dao::RegroupTable::Holds(m_services.session.Database(), m_id);
        if (protectedNow) {
            m_services.prompt.ShowWarning(Text(AdminText::RegroupedMeanwhile));
            LoadEntry();
            return;
        }
        WriteRecord(Entered());
    } catch (const dao::Error& error) {
        if (error.kind == dao::Kind::RecordChanged)
            OfferReload();
        else
            m_services.prompt.ShowWarning(DescribeError(error, m_services.strings));
        return;
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
        return;
    }
    WarnOfCharacters(Entered());
    accept();
}

void frmAddressEditor::WriteRecord(const dao::AddressRecord& entry)
{
    if (!m_rows)
        m_rows = dao::AddressTable::Open(m_services.session.Database());
    if (Editing())
        m_rows->Edit();
    else
        m_rows->AddNew();
    dao::AddressTable::Write(*m_rows, entry);
    m_rows->Update();
    m_services.session.Changes().TellOwn(QStringLiteral("address"));
}

void frmAddressEditor::OfferReload()
{
    if (m_services.prompt.AskQuestion(Text(AdminText::EntryChangedMeanwhile)) && !LoadEntry())
        reject();
}

// Such a name cannot be sent to a radio for display; the directory may hold it all the same.
void frmAddressEditor::WarnOfCharacters(const dao::AddressRecord& entry)
{
    const QString character = Map27Executive::FirstUnsendable(entry.callsign + entry.name);
    if (!character.isEmpty())
        m_services.prompt.ShowWarning(
            FormatMessage(m_services.strings, AdminText::CharacterNotSendable, {character}));
}

QString frmAddressEditor::Text(int id) const
{
    return m_services.strings.LoadString(id);
}
