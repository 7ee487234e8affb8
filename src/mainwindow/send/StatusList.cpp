#include "mainwindow/send/StatusList.h"

#include "core/base/ProgramLog.h"
#include "core/session/DbSession.h"
#include "dao/records/Database.h"
#include "radio/base/StatusTexts.h"

std::vector<StatusItem> ReadStati(IDbSession& session, StatusTexts& statusTexts)
{
    struct Row {
        int code;
        QString received, sent;
    };
    std::vector<Row> read;
    const auto rows =
        session.Database().OpenSnapshot(QStringLiteral("select * from status order by status_code"));
    for (; !rows->Eof(); rows->MoveNext()) {
        read.push_back({rows->Field(QStringLiteral("status_code")).toInt(),
                        rows->Field(QStringLiteral("in_desc")).toString(),
                        rows->Field(QStringLiteral("out_desc")).toString()});
    }
    rows->Close();

    std::vector<StatusItem> items;
    statusTexts.Clear();
    try {
        for (const Row& row : read) {
            items.push_back({row.code, StatusTexts::Line(row.code, row.sent)});
            statusTexts.Set(row.code, row.received, row.sent);
        }
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("status messages: ") + QString::fromUtf8(failure.what()));
    }
    return items;
}
