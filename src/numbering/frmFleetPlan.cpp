#include "numbering/frmFleetPlan.h"

#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/ListHelpers.h"
#include "dao/base/Error.h"
#include "exchange/TableExchange.h"
#include "numbering/FleetImport.h"
#include "numbering/FleetPlanFile.h"
#include "numbering/TextIds.h"
#include "radio/facade/Map27Executive.h"
#include "radio/line/Map27Control.h"
#include "ui_frmFleetPlan.h"

#include <QButtonGroup>
#include <QScopedValueRollback>
#include <QTimer>

namespace {

constexpr int ShortestNumber = 2; // digits; the first entry of the list of digits
constexpr int NotesLines = 3;
constexpr int ListWidth = 28; // characters

ExchangedTable ExchangedPlan(const NumberingServices& services)
{
    const auto import = [services](CsvTable table, bool removeOthers) {
        return std::make_unique<FleetImport>(
            services.session.Database(), std::move(table),
            removeOthers ? FleetImport::Others::Remove : FleetImport::Others::Stay, services.strings);
    };
    const auto text = [services](int& count) {
        const std::vector<FleetRecord> plan = FleetPlanTable(services.session.Database()).Read();
        count = static_cast<int>(plan.size());
        return FormatFleetPlan(plan);
    };
    return {.name = QStringLiteral("fleet"),
            .file = QStringLiteral("fleets.csv"),
            .columns = FleetPlanColumns(),
            .import = import,
            .text = text,
            .optionText = NumberingText::RemoveOthers,
            .mayLeaveOut = false};
}

} // namespace

frmFleetPlan::frmFleetPlan(const NumberingServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmFleetPlan>()),
      m_table(services.session.Database())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    BuildFields();
    ConnectFields();
    ConnectButtons();
    LoadList();
}

frmFleetPlan::~frmFleetPlan() = default;

void frmFleetPlan::BuildFields()
{
    m_ui->lstPlan->setModel(&m_names);
    m_ui->lstPlan->setMinimumWidth(ListWidth * fontMetrics().averageCharWidth());
    m_ui->txtNotes->setFixedHeight((NotesLines + 1) * fontMetrics().lineSpacing());
    for (const int id : {NumberingText::TwoDigit, NumberingText::ThreeDigit})
        m_ui->cmbDigits->addItem(m_services.strings.LoadString(id));
    m_ui->cmbDigits->setCurrentIndex(-1);
    // Fields that follow from others are there to be read and copied, not to be typed into.
    QPalette derived = palette();
    derived.setColor(QPalette::Base, derived.color(QPalette::Window));
    for (QLineEdit* field : {m_ui->txtPrefix1327, m_ui->txtBaseIdent, m_ui->txtMaxIdent})
        field->setPalette(derived);
}

void frmFleetPlan::ConnectFields()
{
    for (QLineEdit* field : {m_ui->txtPrefix1343, m_ui->txtFleetNum, m_ui->txtFleetSize})
        connect(field, &QLineEdit::textChanged, this, &frmFleetPlan::Derive);
    for (QLineEdit* field : {m_ui->txtFleetNum, m_ui->txtFleetSize})
        connect(field, &QLineEdit::textChanged, this, &frmFleetPlan::DigitsForSize);
    for (QRadioButton* option : {m_ui->optInd, m_ui->optGrp})
        connect(option, &QRadioButton::toggled, this, &frmFleetPlan::DigitsForType);
    connect(m_ui->lstPlan->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmFleetPlan::SelectionChanged);
    connect(&m_services.executive.Map27Control(), &Map27Control::NumberingReceived, this,
            &frmFleetPlan::TakeNumbering);
}

void frmFleetPlan::ConnectButtons()
{
    connect(m_ui->cmdNew, &QPushButton::clicked, this, &frmFleetPlan::New);
    connect(m_ui->cmdSave, &QPushButton::clicked, this, &frmFleetPlan::Save);
    connect(m_ui->cmdUndo, &QPushButton::clicked, this, &frmFleetPlan::Undo);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &frmFleetPlan::Delete);
    connect(m_ui->cmdImport, &QPushButton::clicked, this, &frmFleetPlan::Import);
    connect(m_ui->cmdExport, &QPushButton::clicked, this, &frmFleetPlan::Export);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(
        m_ui->cmdAskUnitNumbering, &QPushButton::clicked, this, [this] { AskNumbering(Request::Units); });
    connect(m_ui->cmdAskGrpNumbering, &QPushButton::clicked, this, [this] { AskNumbering(Request::Groups); });
}

void frmFleetPlan::done(int result)
{
    QDialog::done(result);
    Attempt([this] { m_services.executive.LoadFleetData(); });
}

void frmFleetPlan::LoadList()
{
    QStringList names;
    for (const FleetRecord& record : m_table.Read())
        names.append(record.name);
    m_names.setStringList(names);
    m_ui->cmdDelete->setEnabled(false);
}

void frmFleetPlan::ClearFields()
{
    const QScopedValueRollback filling(m_filling, true);
    for (QLineEdit* field : {m_ui->txtFleetName, m_ui->txtPrefix1343, m_ui->txtPrefix1327, m_ui->txtFleetNum,
                             m_ui->txtBaseIdent, m_ui->txtFleetSize, m_ui->txtMaxIdent})
        field->clear();
    m_ui->txtNotes->clear();
    m_ui->cmbDigits->setCurrentIndex(-1);
    ChooseType(std::nullopt);
}

void frmFleetPlan::ShowRecord(const FleetRecord& record)
{
    const QScopedValueRollback filling(m_filling, true);
    ChooseType(record.fleet.fleetType);
    m_ui->txtFleetName->setText(record.name);
    ShowFleet(QString::number(record.fleet.prefix), QString::number(record.fleet.baseIdent),
              QString::number(record.fleet.maxIdent));
    m_ui->cmbDigits->setCurrentIndex(record.fleet.digits - ShortestNumber);
    m_ui->txtNotes->setPlainText(record.notes);
}

// The typed fields follow from these, each only when its source is valid.
void frmFleetPlan::ShowFleet(const QString& prefix1327, const QString& baseIdent, const QString& maxIdent)
{
    m_ui->txtPrefix1327->setText(prefix1327);
    m_ui->txtBaseIdent->setText(baseIdent);
    m_ui->txtMaxIdent->setText(maxIdent);
    m_ui->txtPrefix1343->setText(Prefix1343From(prefix1327));
    m_ui->txtFleetNum->setText(FleetNumberFrom(baseIdent));
    m_ui->txtFleetSize->setText(FleetSizeFrom(baseIdent, maxIdent));
}

void frmFleetPlan::ChooseType(std::optional<FleetType> type)
{
    // While they exclude each other, they cannot both be cleared.
    for (QRadioButton* option : {m_ui->optInd, m_ui->optGrp})
        option->setAutoExclusive(false);
    m_ui->optInd->setChecked(type == FleetType::Units);
    m_ui->optGrp->setChecked(type == FleetType::Groups);
    for (QRadioButton* option : {m_ui->optInd, m_ui->optGrp})
        option->setAutoExclusive(true);
}

void frmFleetPlan::Derive()
{
    if (m_filling)
        return;
    m_ui->txtPrefix1327->setText(Prefix1327From(m_ui->txtPrefix1343->text()));
    m_ui->txtBaseIdent->setText(BaseIdentFrom(m_ui->txtFleetNum->text()));
    m_ui->txtMaxIdent->setText(MaxIdentFrom(m_ui->txtBaseIdent->text(), m_ui->txtFleetSize->text()));
}

// A fleet that has grown too large for 2-digit numbers has three digits.
void frmFleetPlan::DigitsForSize()
{
    if (!m_filling && NeedsThreeDigits(ChosenType(), m_ui->txtBaseIdent->text(), m_ui->txtFleetSize->text()))
        m_ui->cmbDigits->setCurrentIndex(3 - ShortestNumber);
}

// The type may be chosen after the size. It does not change digits that somebody has chosen.
void frmFleetPlan::DigitsForType()
{
    if (m_ui->cmbDigits->currentIndex() < 0)
        DigitsForSize();
}

void frmFleetPlan::New()
{
    m_request = Request::None;
    m_ui->lstPlan->selectionModel()->clear();
    ClearFields();
    m_ui->cmdDelete->setEnabled(false);
    m_ui->txtFleetName->setFocus();
}

void frmFleetPlan::Undo()
{
    if (SelectedName())
        SelectionChanged();
    else
        New();
}

void frmFleetPlan::Save()
{
    const FleetEntry entry = Entry();
    const std::optional<QString> selected = SelectedName();
    Attempt([&] {
        const auto refusal = CheckFleetEntry(entry, m_table.ContextFor(selected), m_services.strings);
        if (refusal) {
            m_services.prompt.ShowWarning(refusal->text);
            FieldOf(refusal->input).setFocus();
            return;
        }
        const FleetRecord record = ToRecord(entry);
        if (selected)
            m_table.Change(*selected, record);
        else
            m_table.Add(record);
        m_request = Request::None;
        LoadList();
        ClearFields();
        Select(record.name);
    });
}

void frmFleetPlan::Delete()
{
    const std::optional<QString> selected = SelectedName();
    if (!selected ||
        !m_services.prompt.AskConfirmation(m_services.strings.LoadString(NumberingText::DeleteQuestion)))
        return;
    Attempt([&] {
        m_table.Delete(*selected);
        LoadList();
        ClearFields();
        m_ui->lstPlan->setFocus();
    });
}

void frmFleetPlan::Import()
{
    const ExchangeServices services{m_services.session, m_services.prompt, m_services.strings};
    if (!TableExchange::Import(services, ExchangedPlan(m_services), *this))
        return;
    New();
    Attempt([this] { LoadList(); });
}

void frmFleetPlan::Export()
{
    TableExchange::Export({m_services.session, m_services.prompt, m_services.strings},
                          ExchangedPlan(m_services), *this);
}

void frmFleetPlan::SelectionChanged()
{
    const std::optional<QString> selected = SelectedName();
    if (!selected)
        return;
    m_request = Request::None;
    std::optional<FleetRecord> record;
    if (Attempt([&] { record = m_table.Find(*selected); }) && record) {
        ShowRecord(*record);
        m_ui->cmdDelete->setEnabled(true);
        return;
    }
    // Deleted in the meantime, perhaps at another workstation: the fields must not show another fleet's data.
    ClearFields();
    m_ui->cmdDelete->setEnabled(false);
}

void frmFleetPlan::Select(const QString& name)
{
    m_ui->lstPlan->setCurrentIndex(m_names.index(static_cast<int>(m_names.stringList().indexOf(name))));
}

std::optional<QString> frmFleetPlan::SelectedName() const
{
    const QModelIndex selected = GetSelectedItem(*m_ui->lstPlan);
    return selected.isValid() ? std::optional(selected.data().toString()) : std::nullopt;
}

void frmFleetPlan::AskNumbering(Request request)
{
    New();
    m_request = request;
    if (!Attempt([this] { m_services.executive.AskNumbering(); }))
        m_request = Request::None;
}

void frmFleetPlan::TakeNumbering()
{
    const Request request = std::exchange(m_request, Request::None);
    if (request == Request::None)
        return;
    const Map27Control& radio = m_services.executive.Map27Control();
    const bool units = request == Request::Units;
    const int base = units ? radio.UnitBaseIdent() : radio.GroupBaseIdent();
    if (base < 1) {
        const int text = units ? NumberingText::RadioHasNoUnits : NumberingText::RadioHasNoGroups;
        QTimer::singleShot(0, this,
                           [this, text] { m_services.prompt.ShowInfo(m_services.strings.LoadString(text)); });
        return;
    }
    {
        const QScopedValueRollback filling(m_filling, true);
        ShowFleet(QString::number(radio.RadioPrefix()), QString::number(base),
                  units ? QString::number(radio.UnitMaxIdent()) : QString());
        ChooseType(units ? FleetType::Units : FleetType::Groups);
        m_ui->cmbDigits->setCurrentIndex((units ? radio.UnitTwoDigit() : radio.GroupTwoDigit()) ? 0 : 1);
        ProposeName(units ? NumberingText::UnitsName : NumberingText::GroupsName);
    }
    if (units)
        return;
    // Not from within the radio's event: the box stays open until somebody has read it.
    QTimer::singleShot(0, this, [this] {
        m_services.prompt.ShowInfo(m_services.strings.LoadString(NumberingText::FindOutSize));
        m_ui->txtFleetSize->setFocus();
    });
}

void frmFleetPlan::ProposeName(int textId)
{
    m_ui->txtFleetName->setText(
        FormatMessage(m_services.strings, textId, {m_ui->txtPrefix1343->text(), m_ui->txtFleetNum->text()}));
}

std::optional<FleetType> frmFleetPlan::ChosenType() const
{
    if (m_ui->optInd->isChecked())
        return FleetType::Units;
    return m_ui->optGrp->isChecked() ? std::optional(FleetType::Groups) : std::nullopt;
}

FleetEntry frmFleetPlan::Entry() const
{
    const int digits = m_ui->cmbDigits->currentIndex();
    return {.name = m_ui->txtFleetName->text(),
            .type = ChosenType(),
            .prefix1343 = m_ui->txtPrefix1343->text(),
            .fleetNumber = m_ui->txtFleetNum->text(),
            .fleetSize = m_ui->txtFleetSize->text(),
            .digits = digits < 0 ? std::nullopt : std::optional(digits + ShortestNumber),
            .notes = m_ui->txtNotes->toPlainText()};
}

QWidget& frmFleetPlan::FieldOf(FleetInput input) const
{
    switch (input) {
    case FleetInput::Type:
        return *m_ui->optInd;
    case FleetInput::Prefix:
        return *m_ui->txtPrefix1343;
    case FleetInput::Number:
        return *m_ui->txtFleetNum;
    case FleetInput::Size:
        return *m_ui->txtFleetSize;
    case FleetInput::Digits:
        return *m_ui->cmbDigits;
    case FleetInput::Notes:
        return *m_ui->txtNotes;
    case FleetInput::Name:
        break;
    }
    return *m_ui->txtFleetName;
}

// Reports a failure and then returns false.
bool frmFleetPlan::Attempt(const std::function<void()>& step)
{
    try {
        step();
        return true;
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
        return false;
    }
}
