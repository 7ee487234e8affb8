#include "numbering/frmSelectNumbering.h"

#include "core/Captions.h"
#include "core/Errors.h"
#include "core/FormLayout.h"
#include "core/Prompt.h"
#include "core/Registry.h"
#include "core/StringSource.h"
#include "numbering/TextIds.h"
#include "ui_frmSelectNumbering.h"

namespace {

const QString numberingKey = QStringLiteral("subscriber_numbering");
const QString defaultNumbering = QStringLiteral("MPT1343");
const QString optionPrefix = QStringLiteral("optSubNum");

constexpr int textWidth = 60; // characters; the caution in a few lines

} // namespace

frmSelectNumbering::frmSelectNumbering(const NumberingServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmSelectNumbering>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    m_ui->Label1->setMinimumWidth(textWidth * fontMetrics().averageCharWidth());
    GrowToContents(*this);
    Load();
    connect(m_ui->cmdSet, &QPushButton::clicked, this, &frmSelectNumbering::Set);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmSelectNumbering::~frmSelectNumbering() = default;

void frmSelectNumbering::Load()
{
    const QString code = RegistryGet(m_services.session, numberingKey, defaultNumbering);
    if (auto* option = findChild<QRadioButton*>(optionPrefix + code))
        option->setChecked(true);
}

void frmSelectNumbering::Set()
{
    if (!m_services.prompt.AskConfirmation(m_services.strings.LoadString(NumberingText::ChangeQuestion)))
        return;
    try {
        const QString code = ChosenCode();
        if (!code.isEmpty())
            RegistryStore(m_services.session, {{numberingKey, code}});
    } catch (const std::exception& failure) {
        m_services.prompt.ShowWarning(DescribeError(failure, m_services.strings));
        return;
    }
    accept();
    m_services.prompt.ShowInfo(m_services.strings.LoadString(NumberingText::LogonAgain));
}

QString frmSelectNumbering::ChosenCode() const
{
    for (const QRadioButton* option : findChildren<QRadioButton*>()) {
        if (option->isChecked() && option->objectName().startsWith(optionPrefix)) {
            const QString code = option->objectName().mid(optionPrefix.size()).trimmed();
            if (!code.isEmpty())
                return code;
        }
    }
    return {};
}
