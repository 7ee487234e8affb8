#pragma once

#include "setup/pages/SetUpPage.h"

class QLabel;
class QLineEdit;

// The first account of a new database.
class AdministratorPage : public SetUpPage {
    Q_OBJECT

public:
    explicit AdministratorPage(const SetUpServices& services);

    void Enter(const SetUpChoice& choice) override;
    QString Take(SetUpChoice& choice) override;
    void Skip(SetUpChoice& choice) override;

private:
    QLineEdit* AddField(int label, const char* name);

    QLineEdit* m_user;
    QLineEdit* m_password;
    QLineEdit* m_repeat;
    QLabel* m_note;
    bool m_isNew = true;
};
