#include "numbering/frmActionetSettings.h"

#include "addressing/ActionetLayout.h"
#include "core/desktop/Prompt.h"
#include "core/session/Registry.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "numbering/TextIds.h"
#include "radio/facade/Map27Executive.h"
#include "ui_frmActionetSettings.h"

#include <algorithm>

namespace {

constexpr auto ModelKey = "ANN_MODEL";
constexpr auto FppKey = "ANN_FPP";
constexpr auto MepKey = "ANN_MEP";

// In the order of their stored indexes.
constexpr int ModelTexts[] = {NumberingText::ModelSmall, NumberingText::ModelMedium,
                              NumberingText::ModelLarge, NumberingText::ModelExtraLarge};

constexpr int CountsWidth = 50; // characters
constexpr int CountsLines = 3;

constexpr int MaxActionetParameter = 10; // of FPP, of MEP, and of their sum

// What remains of one parameter when the other has changed: together they never exceed the maximum.
int LimitedBy(int changed, int other)
{
    return std::min(other, MaxActionetParameter - changed);
}

// How many fleets of each kind the parameters make, as a sentence.
QString FleetCountsText(int fpp, int mep, const IStringSource& strings)
{
    const ActionetFleetCounts counts = CountActionetFleets({.FPP = fpp, .MEP = mep});
    return FormatMessage(
        strings, NumberingText::FleetCounts,
        {QString::number(counts.large), QString::number(counts.small), QString::number(counts.mini)});
}

} // namespace

frmActionetSettings::frmActionetSettings(const NumberingServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmActionetSettings>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    for (const int id : ModelTexts)
        m_ui->cmbModel->addItem(services.strings.LoadString(id), m_ui->cmbModel->count());
    m_ui->lblFPPVal->setMinimumWidth(fontMetrics().horizontalAdvance(QString::number(MaxActionetParameter)));
    m_ui->txtStat->setMinimumWidth(CountsWidth * fontMetrics().averageCharWidth());
    m_ui->txtStat->setFixedHeight((CountsLines + 1) * fontMetrics().lineSpacing());
    Load();

    connect(m_ui->sldFPP, &QSlider::sliderMoved, m_ui->lblFPPVal, qOverload<int>(&QLabel::setNum));
    connect(m_ui->sldMEP, &QSlider::sliderMoved, m_ui->lblMEPVal, qOverload<int>(&QLabel::setNum));
    connect(m_ui->sldFPP, &QSlider::valueChanged, this, [this](int fpp) {
        m_ui->sldMEP->setValue(LimitedBy(fpp, m_ui->sldMEP->value()));
        ShowValues();
    });
    connect(m_ui->sldMEP, &QSlider::valueChanged, this, [this](int mep) {
        m_ui->sldFPP->setValue(LimitedBy(mep, m_ui->sldFPP->value()));
        ShowValues();
    });
    connect(m_ui->cmdSave, &QPushButton::clicked, this, &frmActionetSettings::Save);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmActionetSettings::~frmActionetSettings() = default;

void frmActionetSettings::Load()
{
    m_ui->cmbModel->setCurrentIndex(m_ui->cmbModel->findData(Stored(ModelKey, -1)));
    m_ui->sldFPP->setValue(Stored(FppKey, MaxActionetParameter));
    m_ui->sldMEP->setValue(LimitedBy(m_ui->sldFPP->value(), Stored(MepKey, 0)));
    ShowValues();
}

void frmActionetSettings::ShowValues()
{
    const int fpp = m_ui->sldFPP->value();
    const int mep = m_ui->sldMEP->value();
    m_ui->lblFPPVal->setNum(fpp);
    m_ui->lblMEPVal->setNum(mep);
    m_ui->txtStat->setPlainText(FleetCountsText(fpp, mep, m_services.strings));
}

void frmActionetSettings::Save()
{
    if (m_ui->cmbModel->currentIndex() < 0) {
        m_services.prompt.ShowWarning(m_services.strings.LoadString(NumberingText::SelectModel));
        m_ui->cmbModel->setFocus();
        return;
    }
    const auto decimal = [](int value) { return QString::number(value); };
    try {
        RegistryStore(m_services.session,
                      {{QLatin1String(ModelKey), decimal(m_ui->cmbModel->currentData().toInt())},
                       {QLatin1String(FppKey), decimal(m_ui->sldFPP->value())},
                       {QLatin1String(MepKey), decimal(m_ui->sldMEP->value())}});
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
        return;
    }
    accept();
    try {
        m_services.executive.LoadFleetData();
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
    }
}

int frmActionetSettings::Stored(const char* key, int fallback) const
{
    bool whole = false;
    const int value =
        RegistryGet(m_services.session, QLatin1String(key), QString::number(fallback)).toInt(&whole);
    return whole ? value : fallback;
}
