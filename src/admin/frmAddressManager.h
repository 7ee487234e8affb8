#pragma once

#include "admin/AdminServices.h"

#include <QDialog>
#include <memory>

class DirectoryModel;
class frmAddressEditor;
namespace Ui {
class frmAddressManager;
}

// The address directory. Created once and hidden between uses, so that search and order survive; call
// ReloadDir before showing it.
class frmAddressManager : public QDialog {
    Q_OBJECT

public:
    explicit frmAddressManager(const AdminServices& services, QWidget* parent = nullptr);
    ~frmAddressManager() override;

    // Reads the list afresh; offers its own retries.
    void ReloadDir();

    void done(int result) override;

Q_SIGNALS:
    // Entries were added, changed or deleted, and the window is about to hide.
    void DirectoryChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ConnectControls();
    void ReadOnce();
    void SortBy(int column);
    void EditSelected();
    void DeleteSelected();
    void Import();
    void Export();
    void Edit(void (frmAddressEditor::*prepare)());
    void Run(frmAddressEditor& editor);
    bool HandleKey(QObject* watched, const QKeyEvent& key);

    AdminServices m_services;
    std::unique_ptr<Ui::frmAddressManager> m_ui;
    DirectoryModel* m_model;
    bool m_directoryChanged = false;
    bool m_sortByCallsign = true;
};
