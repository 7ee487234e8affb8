#include "setup/frmSetUp.h"

#include "core/desktop/Prompt.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "setup/base/SetUpWork.h"
#include "setup/base/TextIds.h"
#include "setup/pages/AdministratorPage.h"
#include "setup/pages/DatabasePage.h"
#include "setup/pages/LanguagePage.h"
#include "setup/pages/LastPage.h"
#include "setup/pages/NumberingPage.h"
#include "setup/pages/RadioPage.h"
#include "setup/pages/SoundsPage.h"

#include <QAbstractButton>
#include <QScopedValueRollback>

frmSetUp::frmSetUp(const SetUpServices& services, QWidget* parent) : QWizard(parent), m_services(services)
{
    setObjectName(QStringLiteral("frmSetUp"));
    setWindowTitle(services.strings.LoadString(SetUpText::Title));
    setWizardStyle(QWizard::ClassicStyle);
    setOptions(QWizard::NoBackButtonOnStartPage | QWizard::HaveCustomButton1);
    NameButtons();
    auto* radio = new RadioPage(m_services);
    auto* numbering = new NumberingPage(m_services);
    connect(radio, &RadioPage::RadioAnswered, numbering, &NumberingPage::Fill);
    for (SetUpPage* page : std::initializer_list<SetUpPage*>{
             new LanguagePage(m_services), new DatabasePage(m_services), radio, numbering,
             new AdministratorPage(m_services), new SoundsPage(m_services), new LastPage(m_services)})
        addPage(page);
    NameLists(*this);
    connect(this, &QWizard::currentIdChanged, this, [this] {
        if (SetUpPage* page = Current())
            page->Enter(m_choice);
        const bool last = nextId() == -1;
        button(QWizard::CustomButton1)->setVisible(!last);
        if (last)
            button(QWizard::FinishButton)->setFocus();
    });
    connect(this, &QWizard::customButtonClicked, this, &frmSetUp::SkipStep);
}

frmSetUp::~frmSetUp() = default;

void frmSetUp::NameButtons()
{
    const auto name = [this](WizardButton which, int text, const char* objectName) {
        setButtonText(which, m_services.strings.LoadString(text));
        button(which)->setObjectName(QLatin1String(objectName));
    };
    name(QWizard::BackButton, SetUpText::Back, "cmdBack");
    name(QWizard::NextButton, SetUpText::Next, "cmdNext");
    name(QWizard::FinishButton, SetUpText::Finish, "cmdFinish");
    name(QWizard::CancelButton, SetUpText::Cancel, "cmdCancel");
    name(QWizard::CustomButton1, SetUpText::Skip, "cmdSkip");
}

SetUpPage* frmSetUp::Current() const
{
    return qobject_cast<SetUpPage*>(currentPage());
}

bool frmSetUp::validateCurrentPage()
{
    SetUpPage* page = Current();
    if (m_skipping)
        page->Skip(m_choice);
    const QString problem = m_skipping ? QString() : page->Take(m_choice);
    if (problem.isEmpty())
        page->Leave();
    page->Say(problem);
    return problem.isEmpty();
}

void frmSetUp::SkipStep()
{
    const QScopedValueRollback skipping(m_skipping, true);
    next();
}

// The database takes its time, the rest does not. What cannot be made leaves everything as it was.
void frmSetUp::accept()
{
    if (m_lane || !validateCurrentPage())
        return;
    SetWorking(true);
    m_lane = std::make_unique<Lane>(Lane::Kind::OwnThread);
    m_lane->Do([this, choice = m_choice, options = m_services.options,
                &strings = m_services.strings]() -> Lane::Answer {
        const SetUpWork::Outcome outcome = SetUpWork::MakeDatabase(choice, options, strings);
        return [this, outcome] {
            m_lane.reset();
            SetWorking(false);
            Current()->Say(outcome.problem);
            if (!outcome.done)
                return;
            if (!outcome.problem.isEmpty())
                m_services.prompt.ShowWarning(outcome.problem);
            Finish();
        };
    });
}

void frmSetUp::Finish()
{
    try {
        SetUpWork::StoreSettings(m_choice, m_services);
    } catch (const std::exception& failure) {
        m_services.prompt.ShowError(DescribeError(failure, m_services.strings));
        return;
    }
    QWizard::accept();
}

void frmSetUp::SetWorking(bool working)
{
    Current()->Say(working ? m_services.strings.LoadString(SetUpText::Working) : QString());
    for (const WizardButton which : {QWizard::BackButton, QWizard::FinishButton, QWizard::CancelButton})
        button(which)->setEnabled(!working);
}

// Not while the database is being made.
void frmSetUp::done(int result)
{
    if (m_lane)
        return;
    if (SetUpPage* page = Current())
        page->Leave();
    QWizard::done(result);
}
