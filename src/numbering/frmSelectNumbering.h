#pragma once

#include "numbering/NumberingServices.h"

#include <QDialog>
#include <memory>

namespace Ui {
class frmSelectNumbering;
}

// Chooses the numbering that the next logon uses. The option of a numbering is the one whose name is
// "optSubNum" and the numbering's code.
class frmSelectNumbering : public QDialog {
    Q_OBJECT

public:
    explicit frmSelectNumbering(const NumberingServices& services, QWidget* parent = nullptr);
    ~frmSelectNumbering() override;

private:
    void Load();
    void Set();
    QString ChosenCode() const;

    NumberingServices m_services;
    std::unique_ptr<Ui::frmSelectNumbering> m_ui;
};
