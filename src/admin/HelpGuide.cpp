#include "admin/HelpGuide.h"

#include "admin/TextIds.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

HelpGuide::HelpGuide(const QString& path, const IStringSource& strings)
{
    QFile file(path);
    const bool opened = file.open(QIODevice::ReadOnly);
    const QStringList lines =
        QString::fromUtf8(opened ? file.readAll() : QByteArray()).split(QLatin1Char('\n'));
    QString page;
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1String("@page "))) {
            page = line.mid(6).trimmed();
            m_pages.insert(page, QString());
            if (m_contents.isEmpty())
                m_contents = page;
        } else if (!page.isEmpty()) {
            m_pages[page] += line + QLatin1Char('\n');
        }
    }
    if (m_contents.isEmpty())
        throw Error(ErrorCode::General, FormatMessage(strings, AdminText::HelpNotReadable, {path}));
    const QFileInfo info(path);
    m_pictures = info.absoluteDir().filePath(info.completeBaseName());
}

QString HelpPageFor(const QString& window)
{
    static const QHash<QString, QString> pages = {
        {"winMain", "window"},
        {"winMain/talkgroups", "regroup"},
        {"winMain/individuals", "individuals"},
        {"winMain/scada", "scada"},
        {"frmFirstRun", "first-start"},
        {"frmSetUp", "first-start"},
        {"frmLogbook", "logbook"},
        {"frmLogon", "logon"},
        {"frmPassword", "password"},
        {"frmSettings", "settings"},
        {"frmBackup", "backup"},
        {"frmDiagnostics", "diagnostics"},
        {"frmMap27Agent", "calls"},
        {"frmSentMessages", "sent"},
        {"frmKeys", "keys"},
        {"frmAddressManager", "directory"},
        {"frmAddressEditor", "directory"},
        {"frmStatusEditor", "statuses"},
        {"frmUserManager", "accounts"},
        {"frmSelectNumbering", "numbering"},
        {"frmFleetPlan", "numbering"},
        {"frmActionetSettings", "numbering"},
        {"frmNumInfoDiagnostics", "numbering"},
    };
    return pages.value(window);
}
