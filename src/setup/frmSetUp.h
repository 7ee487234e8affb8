#pragma once

#include "core/base/Lane.h"
#include "setup/base/SetUpChoice.h"
#include "setup/base/SetUpServices.h"

#include <QWizard>

class SetUpPage;

// The assistant that sets the console up, step by step. Each step can be skipped. Nothing is stored before
// its end, the sounds excepted, which have a dialog of their own. Accepted when a database can be opened
// then.
class frmSetUp : public QWizard {
    Q_OBJECT

public:
    explicit frmSetUp(const SetUpServices& services, QWidget* parent = nullptr);
    ~frmSetUp() override;

    bool validateCurrentPage() override;
    void accept() override;
    void done(int result) override;

    // What was decided has a database.
    bool HasDatabase() const { return m_choice.HasDatabase(); }

private:
    void NameButtons();
    void SkipStep();
    void Finish();
    void SetWorking(bool working);
    SetUpPage* Current() const;

    SetUpServices m_services;
    SetUpChoice m_choice;
    std::unique_ptr<Lane> m_lane; // while the database is made
    bool m_skipping = false;
};
