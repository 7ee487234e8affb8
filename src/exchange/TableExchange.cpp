#include "exchange/TableExchange.h"

#include "core/base/Lane.h"
#include "core/base/ProgramLog.h"
#include "core/desktop/Prompt.h"
#include "core/desktop/ShowModal.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/FilePicker.h"
#include "exchange/OutputFile.h"
#include "exchange/TextIds.h"
#include "exchange/frmImport.h"

#include <QDir>
#include <QWidget>

namespace {

// Writes a file beside the window and goes when that is done, or with the window.
class FileWriter : public QObject {
public:
    FileWriter(const ExchangeServices& services, QWidget& owner)
        : QObject(&owner),
          m_services(services),
          m_lane(Lane::Kind::OwnThread)
    {
    }

    void Write(const QString& path, const QString& text, int count)
    {
        const QString exists = m_services.strings.LoadString(ExchangeText::FileExists);
        m_lane.Do([this, path, text, count, exists]() -> Lane::Answer {
            QString problem;
            try {
                WriteNewFile(path, text, exists);
            } catch (const std::exception& failure) {
                problem = QString::fromUtf8(failure.what());
            }
            return [this, path, count, problem] { Tell(path, count, problem); };
        });
    }

private:
    void Tell(const QString& path, int count, const QString& problem)
    {
        deleteLater();
        if (!problem.isEmpty()) {
            m_services.prompt.ShowWarning(problem);
            return;
        }
        ProgramLog::Write(QStringLiteral("Exported %1 lines to %2").arg(count).arg(path));
        m_services.prompt.ShowInfo(
            FormatMessage(m_services.strings, ExchangeText::Exported, {QString::number(count), path}));
    }

    ExchangeServices m_services;
    Lane m_lane;
};

} // namespace

bool TableExchange::Import(const ExchangeServices& services, const ExchangedTable& table, QWidget& owner)
{
    const FilePicker picker{.kind = FilePicker::Kind::Table, .start = QDir::homePath() + '/'};
    const QString path = picker.Pick(services.strings, &owner);
    if (path.isEmpty())
        return false;
    frmImport window(services, table, path);
    return ShowModal(window, owner) == QDialog::Accepted;
}

void TableExchange::Export(const ExchangeServices& services, const ExchangedTable& table, QWidget& owner)
{
    const FilePicker picker{
        .kind = FilePicker::Kind::Table, .newFile = true, .start = QDir::home().filePath(table.file)};
    const QString path = picker.Pick(services.strings, &owner);
    if (path.isEmpty())
        return;
    try {
        int count = 0;
        const QString text = table.text(count);
        (new FileWriter(services, owner))->Write(path, text, count);
    } catch (const std::exception& failure) {
        services.prompt.ShowWarning(DescribeError(failure, services.strings));
    }
}
