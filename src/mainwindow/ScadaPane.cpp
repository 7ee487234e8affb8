#include "mainwindow/ScadaPane.h"

#include "core/Settings.h"
#include "mainwindow/TextIds.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace {

QPushButton* NewButton(const char* name, int textId, QWidget* parent)
{
    auto* button = new QPushButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setProperty("textId", textId);
    return button;
}

QListWidget* NewList(const char* name, int accessibleNameId, QWidget* parent)
{
    auto* list = new QListWidget(parent);
    list->setObjectName(QLatin1String(name));
    list->setProperty("accessibleNameId", accessibleNameId);
    return list;
}

} // namespace

ScadaPane::ScadaPane(Settings& settings, QWidget* parent) : QWidget(parent), m_settings(settings)
{
    setObjectName(QStringLiteral("picScada"));
    auto* label = new QLabel(this);
    label->setObjectName(QStringLiteral("lblScada"));
    label->setProperty("textId", MainText::ScadaUnit);
    cmbScadaUnit = new QComboBox(this);
    cmbScadaUnit->setObjectName(QStringLiteral("cmbScadaUnit"));
    cmbScadaUnit->setEditable(true);
    label->setBuddy(cmbScadaUnit);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(4, 4, 4, 4);
    grid->setSpacing(4);
    grid->addWidget(label, 0, 0);
    grid->addWidget(cmbScadaUnit, 0, 1);
    grid->addWidget(NewList("lvSensors", MainText::SensorsName, this), 1, 0);
    grid->addWidget(NewList("lvControls", MainText::ControlsName, this), 1, 1);
    grid->addWidget(NewButton("cmdQrySensors", MainText::QuerySensors, this), 2, 0);
    grid->addWidget(NewButton("cmdQryControls", MainText::QueryControls, this), 2, 1);
    grid->addWidget(NewButton("cmdALLON", MainText::AllOn, this), 3, 0);
    grid->addWidget(NewButton("cmdALLOFF", MainText::AllOff, this), 3, 1);
    for (QWidget* control : findChildren<QWidget*>()) {
        control->setEnabled(false);
    }
}

void ScadaPane::LoadUnit()
{
    cmbScadaUnit->setEditText(m_settings.ScadaLastUnit());
}

void ScadaPane::StoreUnit()
{
    m_settings.SetScadaLastUnit(cmbScadaUnit->currentText());
}
