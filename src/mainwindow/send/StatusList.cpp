#include "mainwindow/send/StatusList.h"

#include "core/base/ProgramLog.h"
#include "core/session/DbSession.h"
#include "dao/tables/StatusTable.h"
#include "radio/base/StatusTexts.h"

std::vector<StatusItem> ReadStati(IDbSession& session, StatusTexts& statusTexts)
{
    std::vector<dao::StatusRecord> read;
    const auto rows = dao::StatusTable::OpenSnapshot(session.Database());
    for (; !rows->Eof(); rows->MoveNext())
        read.push_back(dao::StatusTable::Read(*rows));
    rows->Close();

    std::vector<StatusItem> items;
    statusTexts.Clear();
    try {
        for (const dao::StatusRecord& row : read) {
            items.push_back({row.code, StatusTexts::Line(row.code, row.out)});
            statusTexts.Set(row.code, row.in, row.out, row.emergency);
        }
    } catch (const std::exception& failure) {
        ProgramLog::Write(QStringLiteral("status messages: ") + QString::fromUtf8(failure.what()));
    }
    return items;
}
