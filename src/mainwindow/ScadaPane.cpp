#include "mainwindow/ScadaPane.h"

#include "core/Errors.h"
#include "core/Icons.h"
#include "core/ListHelpers.h"
#include "core/Prompt.h"
#include "core/Settings.h"
#include "mainwindow/OutcomeDelegate.h"
#include "core/PlainKey.h"
#include "mainwindow/ScadaModel.h"
#include "mainwindow/SessionState.h"
#include "mainwindow/TextIds.h"
#include "radio/Map27Executive.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>

namespace {

QLabel* NewLabel(const char* name, int textId, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setProperty("textId", textId);
    return label;
}

} // namespace

ScadaPane::ScadaPane(const Parts& parts, QWidget* parent)
    : QWidget(parent),
      m_parts(parts),
      m_sensors(new ScadaModel(ScadaModel::Kind::Sensors, parts.strings, this)),
      m_controls(new ScadaModel(ScadaModel::Kind::Controls, parts.strings, this)),
      m_switch(parts.executive, m_controls->Items())
{
    setObjectName(QStringLiteral("picScada"));
    Build();
    for (ScadaModel* model : {m_sensors, m_controls}) {
        connect(model, &ScadaModel::Renamed, this,
                [this, model](int item, const QString& name) { StoreName(*model, item, name); });
    }
}

void ScadaPane::Build()
{
    QLabel* label = NewLabel("lblScada", MainText::ScadaUnit, this);
    cmbScadaUnit = new QComboBox(this);
    cmbScadaUnit->setObjectName(QStringLiteral("cmbScadaUnit"));
    cmbScadaUnit->setEditable(true);
    cmbScadaUnit->setInsertPolicy(QComboBox::NoInsert);
    cmbScadaUnit->setCompleter(nullptr);
    label->setBuddy(cmbScadaUnit);
    QListView* sensors = NewList("lvSensors", MainText::SensorsName, *m_sensors);
    lvControls = NewList("lvControls", MainText::ControlsName, *m_controls);
    lvControls->installEventFilter(this);
    connect(lvControls, &QListView::doubleClicked, this, &ScadaPane::SwitchSelected);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(4, 4, 4, 4);
    grid->setSpacing(4);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
    grid->addWidget(label, 0, 0);
    grid->addWidget(cmbScadaUnit, 0, 1);
    grid->addWidget(NewLabel("lblSensors", MainText::SensorsName, this), 1, 0);
    grid->addWidget(NewLabel("lblControls", MainText::ControlsName, this), 1, 1);
    grid->addWidget(sensors, 2, 0);
    grid->addWidget(lvControls, 2, 1);
    grid->addWidget(NewButton("cmdQrySensors", MainText::QuerySensors, ScadaCode::QuerySensors), 3, 0);
    grid->addWidget(NewButton("cmdQryControls", MainText::QueryControls, ScadaCode::QueryControls), 3, 1);
    grid->addWidget(NewButton("cmdALLON", MainText::AllOn, ScadaCode::AllOn), 4, 0);
    grid->addWidget(NewButton("cmdALLOFF", MainText::AllOff, ScadaCode::AllOff), 4, 1);
}

QListView* ScadaPane::NewList(const char* name, int accessibleNameId, ScadaModel& model)
{
    auto* list = new QListView(this);
    list->setObjectName(QLatin1String(name));
    list->setProperty("accessibleNameId", accessibleNameId);
    list->setModel(&model);
    list->setItemDelegate(new OutcomeDelegate(list));
    list->setIconSize(IconSize(*this));
    list->setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed);
    return list;
}

QWidget* ScadaPane::NewButton(const char* name, int textId, int statusCode)
{
    auto* button = new QPushButton(this);
    button->setObjectName(QLatin1String(name));
    button->setProperty("textId", textId);
    connect(button, &QPushButton::clicked, this,
            [this, statusCode] { m_parts.executive.SendStatus(cmbScadaUnit->currentText(), statusCode); });
    return button;
}

void ScadaPane::Load()
{
    for (int item = 0; item < ScadaItemCount; ++item) {
        m_sensors->SetName(item, m_parts.settings.ScadaSensorName(item));
        m_controls->SetName(item, m_parts.settings.ScadaControlName(item));
    }
    cmbScadaUnit->setEditText(m_parts.settings.ScadaLastUnit());
}

void ScadaPane::StoreUnit()
{
    m_parts.settings.SetScadaLastUnit(cmbScadaUnit->currentText());
}

void ScadaPane::StoreName(ScadaModel& model, int item, const QString& name)
{
    try {
        if (&model == m_sensors) {
            m_parts.settings.SetScadaSensorName(item, name);
        } else {
            m_parts.settings.SetScadaControlName(item, name);
        }
        model.SetName(item, name);
    } catch (const std::exception& failure) {
        m_parts.prompt.ShowWarning(DescribeError(failure, m_parts.strings));
    }
}

void ScadaPane::SwitchSelected()
{
    const QModelIndex control = GetSelectedItem(*lvControls);
    if (m_parts.session.LoggedOn && control.isValid() &&
        m_switch.Switch(cmbScadaUnit->currentText(), control.row())) {
        m_controls->ItemsChanged();
    }
}

// Enter switches. While a name is edited it belongs to the editor, which hands it on to the list.
bool ScadaPane::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lvControls && event->type() == QEvent::KeyPress && lvControls->hasFocus() &&
        IsPlainEnter(*static_cast<QKeyEvent*>(event))) {
        SwitchSelected();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void ScadaPane::UpdateScadaSensors(const QString& bits)
{
    ApplyReport(m_sensors->Items(), bits);
    m_sensors->ItemsChanged();
}

void ScadaPane::UpdateScadaControls(const QString& bits)
{
    ApplyReport(m_controls->Items(), bits);
    m_controls->ItemsChanged();
}

void ScadaPane::ReflectScadaControl()
{
    if (m_switch.Reflect()) {
        m_controls->ItemsChanged();
    }
}

void ScadaPane::CancelScadaControl()
{
    if (m_switch.Cancel()) {
        m_controls->ItemsChanged();
    }
}
