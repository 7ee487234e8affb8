#pragma once

#include "core/logon/FirstRunChoice.h"

#include <QDialog>
#include <functional>
#include <memory>

struct IStringSource;
namespace Ui {
class frmFirstRun;
}

// Shown when there is no database where it is looked for: creates one with its first administrator, or opens
// another one. Mistakes in the entry are reported inside the dialog.
class frmFirstRun : public QDialog {
    Q_OBJECT

public:
    // Carries out the choice. Returns an empty text, or a sentence that says why it is impossible. Must not
    // raise.
    using Action = std::function<QString(const FirstRunChoice&)>;

    // `missing` is where the database was looked for; empty when none is configured.
    frmFirstRun(const IStringSource& strings, const QString& missing, const dao::Location& proposed,
                Action action, QWidget* parent = nullptr);
    ~frmFirstRun() override;

    // The entry as it stands.
    FirstRunChoice Choice() const;

private:
    void SetMode();
    void EnableSharing();
    void SelectDatabase();
    void SelectWorkgroup();
    void FollowDatabase();
    void Confirm();
    void ShowProblem(const FirstRunProblem& problem);

    const IStringSource& m_strings;
    dao::Location m_proposed;
    Action m_action;
    bool m_workgroupTyped = false; // else it follows the database file's name
    std::unique_ptr<Ui::frmFirstRun> m_ui;
};
