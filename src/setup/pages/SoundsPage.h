#pragma once

#include "setup/pages/SetUpPage.h"

class SoundsPage : public SetUpPage {
    Q_OBJECT

public:
    explicit SoundsPage(const SetUpServices& services);

    QString Take(SetUpChoice&) override { return {}; }
    void Skip(SetUpChoice&) override {}
};
