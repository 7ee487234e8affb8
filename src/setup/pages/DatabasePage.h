#pragma once

#include "core/base/Lane.h"
#include "setup/base/SetUpRules.h"
#include "setup/pages/SetUpPage.h"

#include <QTimer>

class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

// Where the database is to be, or is. A server can be tried without an account: one that refuses it has
// answered, with the right certificate.
class DatabasePage : public SetUpPage {
    Q_OBJECT

public:
    explicit DatabasePage(const SetUpServices& services);

    QString Take(SetUpChoice& choice) override;
    void Skip(SetUpChoice& choice) override;
    void Leave() override;

private:
    void AddServer();
    void SetMode();
    void ChooseFile();
    void ChooseCertificate();
    void Test();
    void EndTest(const QString& said);
    SetUpRules::ServerEntry Server() const;

    QRadioButton* m_new;
    QRadioButton* m_existing;
    QRadioButton* m_onServer;
    QLineEdit* m_file;
    QPushButton* m_choose;
    QGroupBox* m_server;
    QLineEdit* m_host;
    QLineEdit* m_name;
    QLineEdit* m_certificate;
    QPushButton* m_test;
    QTimer m_limit;  // runs while a server is tried
    int m_tests = 0; // the answer of an earlier one is not shown
    Lane m_lane;
};
