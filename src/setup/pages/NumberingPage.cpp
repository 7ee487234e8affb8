#include "setup/pages/NumberingPage.h"

#include "core/texts/FormatMessage.h"
#include "setup/base/SetUpRules.h"
#include "setup/base/TextIds.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <algorithm>

namespace {

constexpr std::array FieldTexts{SetUpText::Prefix, SetUpText::FleetNumber, SetUpText::FleetSize};
constexpr std::array FieldNames{"Prefix", "Number", "Size"};

} // namespace

NumberingPage::NumberingPage(const SetUpServices& services)
    : SetUpPage(services, "pageNumbering", SetUpText::NumberingTitle, SetUpText::NumberingAbout),
      m_mpt1343(AddButton<QRadioButton>(SetUpText::Mpt1343, "optMpt1343")),
      m_actionet(AddButton<QRadioButton>(SetUpText::Actionet, "optActionet")),
      m_source(AddText("lblSource"))
{
    AddFleet(m_units, SetUpText::Units, "txtUnits");
    AddFleet(m_groups, SetUpText::Groups, "txtGroups");
    m_example = AddText("lblExample");
    m_mpt1343->setChecked(true);
    connect(m_mpt1343, &QRadioButton::toggled, this, &NumberingPage::ShowExample);
}

QGroupBox* NumberingPage::AddFleet(Fleet& fleet, int caption, const char* name)
{
    auto* box = new QGroupBox(Text(caption), this);
    auto* row = new QHBoxLayout(box);
    for (std::size_t i = 0; i < fleet.fields.size(); ++i) {
        auto* edit = new QLineEdit(box);
        edit->setObjectName(QLatin1String(name) + QLatin1String(FieldNames[i]));
        auto* label = new QLabel(Text(FieldTexts[i]), box);
        label->setBuddy(edit);
        edit->setAccessibleName(FormatMessage(m_services.strings, SetUpText::FieldOf,
                                              {Text(caption), Text(FieldTexts[i]).remove(u'&')}));
        row->addWidget(label);
        row->addWidget(edit);
        connect(edit, &QLineEdit::textChanged, this, &NumberingPage::ShowExample);
        fleet.fields[i] = edit;
    }
    AddWidget(box);
    return box;
}

void NumberingPage::Fill(const RadioNumbering& numbering)
{
    m_fromRadio = true;
    for (const Fleet& fleet : {m_units, m_groups}) {
        for (const FleetEntry& entry : SetUpRules::EntriesOf(numbering, m_services.strings)) {
            if (entry.type != fleet.type)
                continue;
            fleet.fields[0]->setText(entry.prefix1343);
            fleet.fields[1]->setText(entry.fleetNumber);
            fleet.fields[2]->setText(entry.fleetSize);
        }
    }
}

void NumberingPage::Enter(const SetUpChoice& choice)
{
    SetUpPage::Enter(choice);
    m_isNew = choice.database == SetUpChoice::Database::New;
    m_mpt1343->setEnabled(m_isNew);
    m_actionet->setEnabled(m_isNew);
    ShowExample();
}

// A fleet of which nothing is entered does not exist.
std::vector<FleetEntry> NumberingPage::Entries() const
{
    std::vector<FleetEntry> entries;
    for (const Fleet& fleet : {m_units, m_groups}) {
        QStringList typed;
        for (const QLineEdit* field : fleet.fields)
            typed.append(field->text().trimmed());
        if (!typed.join(QString()).isEmpty())
            entries.push_back(
                SetUpRules::EntryOf(fleet.type, typed[0], typed[1], typed[2], m_services.strings));
    }
    return entries;
}

void NumberingPage::ShowExample()
{
    const bool fleets = m_isNew && m_mpt1343->isChecked();
    for (const Fleet& fleet : {m_units, m_groups})
        for (QLineEdit* field : fleet.fields)
            field->setEnabled(fleets);
    if (!m_isNew)
        m_source->setText(Text(SetUpText::NumberingElsewhere));
    else if (!fleets)
        m_source->setText(Text(SetUpText::ActionetLater));
    else
        m_source->setText(Text(m_fromRadio ? SetUpText::TakenFromRadio : SetUpText::NotFromRadio));
    const std::vector<FleetEntry> entries = Entries();
    const bool good = fleets && SetUpRules::ProblemOf(entries, m_services.strings).isEmpty();
    m_example->setText(good ? SetUpRules::ExampleOf(entries, m_services.strings) : QString());
}

QString NumberingPage::Take(SetUpChoice& choice)
{
    Skip(choice);
    if (!m_isNew)
        return {};
    if (m_actionet->isChecked()) {
        choice.numbering = SetUpChoice::Numbering::Actionet;
        return {};
    }
    const std::vector<FleetEntry> entries = Entries();
    QString problem = SetUpRules::ProblemOf(entries, m_services.strings);
    if (!problem.isEmpty())
        return problem;
    choice.numbering = SetUpChoice::Numbering::Mpt1343;
    for (const FleetEntry& entry : entries)
        choice.fleets.push_back(ToRecord(entry));
    return {};
}

void NumberingPage::Skip(SetUpChoice& choice)
{
    choice.numbering = SetUpChoice::Numbering::Later;
    choice.fleets.clear();
}
