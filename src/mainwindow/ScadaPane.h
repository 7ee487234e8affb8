#pragma once

#include <QWidget>

class QComboBox;
class Settings;

// "picScada": the panel of one outstation. Its controls are not available yet; the chosen unit is kept.
class ScadaPane : public QWidget {
    Q_OBJECT

public:
    ScadaPane(Settings& settings, QWidget* parent);

    void LoadUnit();
    // Raises Error when the settings cannot be written.
    void StoreUnit();

private:
    Settings& m_settings;
    QComboBox* cmbScadaUnit;
};
