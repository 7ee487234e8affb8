#include "numbering/frmNumInfoDiagnostics.h"

#include "addressing/RadioNumbering.h"
#include "core/texts/FormatMessage.h"
#include "core/widgets/Captions.h"
#include "core/widgets/FormLayout.h"
#include "numbering/TextIds.h"
#include "radio/facade/Map27Executive.h"
#include "ui_frmNumInfoDiagnostics.h"

namespace {

constexpr int ReportWidth = 44; // characters
constexpr int ReportLines = 8;

} // namespace

frmNumInfoDiagnostics::frmNumInfoDiagnostics(const IStringSource& strings, Map27Executive& executive)
    : m_strings(strings),
      m_ui(std::make_unique<Ui::frmNumInfoDiagnostics>())
{
    m_ui->setupUi(this);
    LoadCaptions(*this, strings);
    m_ui->txtDiags->setMinimumSize(ReportWidth * fontMetrics().averageCharWidth(),
                                   (ReportLines + 1) * fontMetrics().lineSpacing());
    m_ui->lblDoubts->hide();
    connect(m_ui->cmdHide, &QPushButton::clicked, this, &QWidget::hide);
    connect(&executive, &Map27Executive::NumberingDoubted, this, &frmNumInfoDiagnostics::ShowDoubts);
}

frmNumInfoDiagnostics::~frmNumInfoDiagnostics() = default;

void frmNumInfoDiagnostics::DisplayDiags(const RadioNumbering& numbering)
{
    QStringList values;
    for (const int value :
         {numbering.prefix, numbering.ident, numbering.unitBaseIdent, numbering.unitMaxIdent,
          numbering.unitDigits, numbering.groupBaseIdent, numbering.groupMaxIdent, numbering.groupDigits})
        values.append(QString::number(value));
    m_ui->txtDiags->setPlainText(FormatMessage(m_strings, NumberingText::Report, values));
}

void frmNumInfoDiagnostics::ShowDoubts(const QStringList& doubts)
{
    m_ui->lblDoubts->setText(doubts.join(QLatin1String("\n\n")));
    m_ui->lblDoubts->setVisible(!doubts.isEmpty());
    GrowToContents(*this);
}
