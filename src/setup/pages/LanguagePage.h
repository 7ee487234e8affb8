#pragma once

#include "setup/pages/SetUpPage.h"

class QComboBox;

class LanguagePage : public SetUpPage {
    Q_OBJECT

public:
    explicit LanguagePage(const SetUpServices& services);

    QString Take(SetUpChoice& choice) override;
    void Skip(SetUpChoice& choice) override { choice.language.reset(); }

private:
    QComboBox* m_languages;
};
