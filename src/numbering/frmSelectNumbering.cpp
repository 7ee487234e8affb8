#include "numbering/frmSelectNumbering.h"

#include "core/desktop/Prompt.h"
#include "core/session/Registry.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/FormLayout.h"
#include "numbering/TextIds.h"
#include "ui_frmSelectNumbering.h"

namespace {

const QString NumberingKey = QStringLiteral("subscriber_numbering");
const QString DefaultNumbering = QStringLiteral("MPT1343");
const QString OptionPrefix = QStringLiteral("optSubNum");

constexpr int TextWidth = 60; // characters; the caution in a few lines

} // namespace

frmSelectNumbering::frmSelectNumbering(const NumberingServices& services, QWidget* parent)
    : QDialog(parent),
      m_services(services),
      m_ui(std::make_unique<Ui::frmSelectNumbering>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, services.strings);
    m_ui->Label1->setMinimumWidth(TextWidth * fontMetrics().averageCharWidth());
    GrowToContents(*this);
    Load();
    connect(m_ui->cmdSet, &QPushButton::clicked, this, &frmSelectNumbering::Set);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmSelectNumbering::~frmSelectNumbering() = default;

void frmSelectNumbering::Load()
{
    const QString code = RegistryGet(m_services.session, NumberingKey, DefaultNumbering);
    if (auto* option = findChild<QRadioButton*>(OptionPrefix + code))
        option->setChecked(true);
}

void frmSelectNumbering::Set()
{
    if (!m_services.prompt.AskConfirmation(m_services.strings.LoadString(NumberingText::ChangeQuestion)))
        return;
    try {
        const QString code = ChosenCode();
        if (!code.isEmpty())
            RegistryStore(m_services.session, {{NumberingKey, code}});
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
        if (option->isChecked() && option->objectName().startsWith(OptionPrefix)) {
            const QString code = option->objectName().mid(OptionPrefix.size()).trimmed();
            if (!code.isEmpty())
                return code;
        }
    }
    return {};
}
