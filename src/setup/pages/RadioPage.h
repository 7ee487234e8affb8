#pragma once

#include "setup/pages/SetUpPage.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The radio's port, and whether a radio is there. What it says of its own number is kept for the numbering.
class RadioPage : public SetUpPage {
    Q_OBJECT

public:
    explicit RadioPage(const SetUpServices& services);

    QString Take(SetUpChoice& choice) override;
    void Skip(SetUpChoice& choice) override;
    void Leave() override;

Q_SIGNALS:
    void RadioAnswered(const RadioNumbering& numbering);

private:
    void ListPorts();
    void Test();
    void ShowAnswer(const RadioNumbering& numbering);
    void ShowFailure(const QString& reason);
    QString Port() const;

    QComboBox* m_port;
    QComboBox* m_speed;
    QPushButton* m_test;
    QLineEdit* m_command; // to be copied, when the port is not ours to open
    QPushButton* m_copy;
    RadioTrial m_trial;
};
