#pragma once

#include "numbering/NumberingServices.h"

#include <QDialog>
#include <memory>

namespace Ui {
class frmActionetSettings;
}

// Edits the parameters of the ANN numbering. Saving them takes effect at once.
class frmActionetSettings : public QDialog {
    Q_OBJECT

public:
    explicit frmActionetSettings(const NumberingServices& services, QWidget* parent = nullptr);
    ~frmActionetSettings() override;

private:
    void Load();
    void ShowValues();
    void Save();
    int Stored(const char* key, int fallback) const;

    NumberingServices m_services;
    std::unique_ptr<Ui::frmActionetSettings> m_ui;
};
