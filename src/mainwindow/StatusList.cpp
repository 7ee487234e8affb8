#include "mainwindow/StatusList.h"

#include "core/DbSession.h"
#include "core/ProgramLog.h"
#include "dao/Database.h"
#include "radio/StatusTexts.h"

std::vector<StatusItem> ReadStati(IDbSession& session, StatusTexts& statusTexts)
{
    std::vector<StatusItem> items;
    statusTexts.Clear();
    try {
        const auto rows =
            session.Database().OpenSnapshot(QStringLiteral("select * from status order by status_code"));
        for (; !rows->Eof(); rows->MoveNext()) {
            const int code = rows->Field(QStringLiteral("status_code")).toInt();
            const QString sent = rows->Field(QStringLiteral("out_desc")).toString();
            items.push_back({code, StatusTexts::Line(code, sent)});
            statusTexts.Set(code, rows->Field(QStringLiteral("in_desc")).toString(), sent);
        }
        rows->Close();
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("status messages not read: ") + QString::fromUtf8(failure.what()));
    }
    return items;
}
