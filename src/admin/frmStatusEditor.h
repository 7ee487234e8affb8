#pragma once

#include "admin/AdminServices.h"
#include "admin/StatusModel.h"

#include <QDialog>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

namespace dao {
class Recordset;
}
namespace Ui {
class frmStatusEditor;
}

// Maintains the status messages and the on/off duty codes. Created for each use; it keeps its recordset open,
// which locks nothing.
class frmStatusEditor : public QDialog {
    Q_OBJECT

public:
    explicit frmStatusEditor(const AdminServices& services, QWidget* parent = nullptr);
    ~frmStatusEditor() override;

Q_SIGNALS:
    // A status message was stored or deleted.
    void StatiChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FillCodes();
    void ConnectControls();
    void LoadDuty();
    void FillList();
    void ShowCode();
    void EnableTexts(bool enabled);
    void New();
    void EditText();
    void Set();
    void Delete();
    void ApplyDuty();
    void Import();
    void Export();
    // Returns the stored message of a code and makes it current; nothing when there is none.
    std::optional<dao::StatusRecord> Seek(int code);
    bool HandleKey(QObject* watched, const QKeyEvent& key);
    void Try(const std::function<void()>& change);
    QString Text(int id) const;

    AdminServices m_services;
    std::unique_ptr<Ui::frmStatusEditor> m_ui;
    StatusModel* m_model;
    std::unique_ptr<dao::Recordset> m_rows;
    std::optional<dao::StatusRecord> m_shown; // of the chosen code, as it was read
    QTimer m_justShown;                       // runs until the event that chose the code is over
    bool m_filling = false;
};
