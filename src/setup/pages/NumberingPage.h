#pragma once

#include "setup/pages/SetUpPage.h"

#include <array>

class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;

// How the network numbers its radios: the fleets as the radio reports them, or as they are entered.
class NumberingPage : public SetUpPage {
    Q_OBJECT

public:
    explicit NumberingPage(const SetUpServices& services);

    void Enter(const SetUpChoice& choice) override;
    QString Take(SetUpChoice& choice) override;
    void Skip(SetUpChoice& choice) override;

    // Fills in what the radio has said.
    void Fill(const RadioNumbering& numbering);

private:
    struct Fleet {
        FleetType type;
        std::array<QLineEdit*, 3> fields; // prefix, number, size
    };

    QGroupBox* AddFleet(Fleet& fleet, int caption, const char* name);
    std::vector<FleetEntry> Entries() const;
    void ShowExample();

    QRadioButton* m_mpt1343;
    QRadioButton* m_actionet;
    QLabel* m_source;
    Fleet m_units{FleetType::Units, {}};
    Fleet m_groups{FleetType::Groups, {}};
    QLabel* m_example;
    bool m_isNew = true; // the database; another one has its numbering already
    bool m_fromRadio = false;
};
