#include "core/logon/frmPassword.h"

#include "core/desktop/Prompt.h"
#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"
#include "core/widgets/Captions.h"
#include "dao/Workspace.h"
#include "dao/base/Error.h"
#include "ui_frmPassword.h"

#include <QShowEvent>

namespace {

constexpr int FieldWidth = 24; // characters

// The operator's name is not in question here: only the old password can be wrong.
QString WhyRefused(const std::exception& failure, const IStringSource& strings)
{
    const auto* error = dynamic_cast<const dao::Error*>(&failure);
    if (error && error->kind == dao::Kind::WrongPassword)
        return strings.LoadString(CoreText::OldPasswordWrong);
    return DescribeError(failure, strings);
}

} // namespace

frmPassword::frmPassword(IDbSession& session, IPrompt& prompt, const IStringSource& strings, QWidget* parent)
    : QDialog(parent),
      m_session(session),
      m_prompt(prompt),
      m_strings(strings),
      m_ui(std::make_unique<Ui::frmPassword>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, strings);
    m_ui->txt_0->setMinimumWidth(FieldWidth * fontMetrics().averageCharWidth());
    connect(m_ui->Command2, &QPushButton::clicked, this, &frmPassword::Change);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmPassword::~frmPassword() = default;

void frmPassword::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        Empty(0);
}

void frmPassword::Change()
{
    const QString oldPassword = m_ui->txt_0->text();
    const QString newPassword = m_ui->txt_1->text();
    if (newPassword != m_ui->txt_2->text()) {
        Empty(1);
        m_prompt.ShowWarning(m_strings.LoadString(CoreText::PasswordsDiffer));
        return;
    }
    try {
        dao::Workspace& workspace = m_session.Workspace();
        workspace.Users().Item(workspace.UserName())->NewPassword(oldPassword, newPassword);
    } catch (const std::exception& failure) {
        m_prompt.ShowWarning(WhyRefused(failure, m_strings));
        Empty(0);
        return;
    }
    Q_EMIT PasswordChanged(m_strings.LoadString(CoreText::PasswordChanged));
    accept();
}

void frmPassword::Empty(int first)
{
    QLineEdit* const fields[] = {m_ui->txt_0, m_ui->txt_1, m_ui->txt_2};
    for (std::size_t i = static_cast<std::size_t>(first); i < std::size(fields); ++i)
        fields[i]->clear();
    fields[first]->setFocus();
}
