#include "setup/pages/LanguagePage.h"

#include "core/settings/Settings.h"
#include "core/texts/LangId.h"
#include "core/texts/StringSourceImpl.h"
#include "setup/base/TextIds.h"

#include <QComboBox>

LanguagePage::LanguagePage(const SetUpServices& services)
    : SetUpPage(services, "pageLanguage", SetUpText::LanguageTitle, SetUpText::LanguageAbout),
      m_languages(new QComboBox(this))
{
    m_languages->addItem(Text(SetUpText::LanguageOfSystem), QString());
    for (const quint16 language : CStringSourceImpl::InstalledLanguages())
        m_languages->addItem(LocaleOf(language).nativeLanguageName(), QString::number(language, 16));
    AddRow(SetUpText::Language, m_languages, "cmbLanguage");
    const int stored = m_languages->findData(
        services.settings.Read(QStringLiteral("Language"), QStringLiteral("LangID"), {}).toLower());
    m_languages->setCurrentIndex(std::max(0, stored));
}

QString LanguagePage::Take(SetUpChoice& choice)
{
    choice.language = m_languages->currentData().toString();
    return {};
}
