// Log records that wait in a file: each line is no record, or the same record when it is written again.

#include "core/eventlog/RecordLine.h"
#include "fuzz/Input.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray line(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto record = ParseLine(line);
    if (!record)
        return 0;
    MUST_HOLD(!record->id.isEmpty());
    // Whoever stores it has to know what to do.
    if (record->regroup)
        MUST_HOLD(record->regroup->kind >= RegroupChange::Kind::Withdrawn &&
                  record->regroup->kind <= RegroupChange::Kind::Dissolved);
    if (record->attention) {
        using Entry = dao::AttentionRecord;
        MUST_HOLD(record->attention->kind >= AttentionAct::Kind::Heard &&
                  record->attention->kind <= AttentionAct::Kind::Done);
        MUST_HOLD(record->attention->entry.kind >= Entry::Kind::Emergency &&
                  record->attention->entry.kind <= Entry::Kind::Failed);
        MUST_HOLD(record->attention->entry.again >= Entry::Again::Nothing &&
                  record->attention->entry.again <= Entry::Again::TextInEightBits);
    }
    const QByteArray written = LineOf(*record);
    MUST_HOLD(written.count('\n') == 1 && written.endsWith('\n'));
    const auto again = ParseLine(written);
    MUST_HOLD(again);
    MUST_HOLD(LineOf(*again) == written);
    MUST_HOLD(again->time == record->time || !record->time.isValid());
    return 0;
}
