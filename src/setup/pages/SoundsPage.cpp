#include "setup/pages/SoundsPage.h"

#include "core/logon/frmSounds.h"
#include "setup/base/TextIds.h"

#include <QPushButton>

SoundsPage::SoundsPage(const SetUpServices& services)
    : SetUpPage(services, "pageSounds", SetUpText::SoundsTitle, SetUpText::SoundsAbout)
{
    auto* sounds = AddButton<QPushButton>(SetUpText::Sounds, "cmdSounds");
    connect(sounds, &QPushButton::clicked, this, [this] {
        frmSounds dialog(m_services.settings, m_services.prompt, m_services.beeper, m_services.strings, this);
        dialog.exec();
    });
}
