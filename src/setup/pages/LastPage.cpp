#include "setup/pages/LastPage.h"

#include "setup/base/TextIds.h"

#include <QLabel>
#include <QPushButton>

LastPage::LastPage(const SetUpServices& services)
    : SetUpPage(services, "pageLast", SetUpText::LastTitle, SetUpText::LastAbout),
      m_note(AddText("lblNote"))
{
    auto* start = AddButton<QPushButton>(SetUpText::StartDemonstration, "cmdDemonstration");
    connect(start, &QPushButton::clicked, this, [this, start] {
        const QString problem = m_services.startDemonstration();
        Say(problem.isEmpty() ? Text(SetUpText::DemonstrationStarted) : problem);
        start->setEnabled(!problem.isEmpty());
    });
}

void LastPage::Enter(const SetUpChoice& choice)
{
    SetUpPage::Enter(choice);
    m_note->setText(choice.HasDatabase() ? QString() : Text(SetUpText::NoAdministrator));
}
