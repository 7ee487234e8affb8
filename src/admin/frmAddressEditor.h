#pragma once

#include "admin/AdminServices.h"
#include "dao/tables/AddressTable.h"

#include <QDialog>
#include <memory>

namespace dao {
class Recordset;
}
namespace Ui {
class frmAddressEditor;
}

// Adds or changes one entry of the address directory. Created for each use: prepare it with one of the first
// three functions, then show it modally; it is accepted once the entry has been stored.
class frmAddressEditor : public QDialog {
    Q_OBJECT

public:
    explicit frmAddressEditor(const AdminServices& services, QWidget* parent = nullptr);
    ~frmAddressEditor() override;

    void AddIndividual();
    void AddTalkgroup();
    // Takes address_id and picture key of the list's item. False, after a warning, when the entry no longer
    // exists or cannot be read.
    bool EditAddress(qint32 id, const QString& iconKey);

private:
    enum class Mode { AddIndividual, AddTalkgroup, EditIndividual, EditTalkgroup };

    void Prepare(Mode mode);
    bool LoadEntry();
    void EnableKeyFields(bool enabled);
    void DynamicToggled(bool checked);
    dao::AddressRecord Entered() const;
    bool IsValid(const dao::AddressRecord& entry);
    bool CompleteIdent();
    void Store();
    void WriteRecord(const dao::AddressRecord& entry);
    void OfferReload();
    void WarnOfCharacters(const dao::AddressRecord& entry);
    dao::EntryKind Kind() const;
    bool Editing() const { return m_mode == Mode::EditIndividual || m_mode == Mode::EditTalkgroup; }
    QString Text(int id) const;

    AdminServices m_services;
    std::unique_ptr<Ui::frmAddressEditor> m_ui;
    Mode m_mode = Mode::AddIndividual;
    qint32 m_id = 0;
    std::unique_ptr<dao::Recordset> m_rows; // open as long as the dialog is
};
