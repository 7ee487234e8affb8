#pragma once

#include "numbering/FleetPlanTable.h"
#include "numbering/NumberingServices.h"

#include <QDialog>
#include <QStringListModel>
#include <functional>
#include <memory>

namespace Ui {
class frmFleetPlan;
}

// Edits the MPT1343 fleet plan. It can fill in the radio's own fleet, as the radio reports it. Closing it
// makes the numbering adopt the plan.
class frmFleetPlan : public QDialog {
    Q_OBJECT

public:
    // Raises dao::Error when the plan cannot be opened.
    explicit frmFleetPlan(const NumberingServices& services, QWidget* parent = nullptr);
    ~frmFleetPlan() override;

    void done(int result) override;

private:
    // The fleet that the radio was asked for; its answer fills the fields.
    enum class Request {
        None,
        Units,
        Groups,
    };

    void BuildFields();
    void ConnectFields();
    void ConnectButtons();

    void LoadList();
    void ClearFields();
    void ShowRecord(const FleetRecord& record);
    void ShowFleet(const QString& prefix1327, const QString& baseIdent, const QString& maxIdent);
    void ChooseType(std::optional<FleetType> type);
    void Derive();
    void DigitsForSize();
    void DigitsForType();

    void New();
    void Undo();
    void Save();
    void Delete();
    void Import();
    void Export();
    void SelectionChanged();
    void Select(const QString& name);
    std::optional<QString> SelectedName() const;

    void AskNumbering(Request request);
    void TakeNumbering();
    void ProposeName(int textId);

    std::optional<FleetType> ChosenType() const;
    FleetEntry Entry() const;
    QWidget& FieldOf(FleetInput input) const;
    bool Attempt(const std::function<void()>& step);

    NumberingServices m_services;
    std::unique_ptr<Ui::frmFleetPlan> m_ui;
    FleetPlanTable m_table;
    QStringListModel m_names;
    Request m_request = Request::None;
    bool m_filling = false; // the fields are filled by the program; nothing is derived meanwhile
};
