#pragma once

#include "setup/pages/SetUpPage.h"

class QLabel;

// What is going to be done, and the demonstration for whoever wants to look around first.
class LastPage : public SetUpPage {
    Q_OBJECT

public:
    explicit LastPage(const SetUpServices& services);

    void Enter(const SetUpChoice& choice) override;
    QString Take(SetUpChoice&) override { return {}; }
    void Skip(SetUpChoice&) override {}

private:
    QLabel* m_note;
};
