#include "dao/sqlite/Functions.h"
#include "dao/base/TextMatch.h"
#include "dao/base/Words.h"
#include <sqlite3.h>

namespace dao::sqlite {

namespace {

QString TextOf(sqlite3_value* value)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return QString::fromUtf8(text, sqlite3_value_bytes(value));
}

void FoldFunction(sqlite3_context* context, int, sqlite3_value** values)
{
    if (sqlite3_value_type(values[0]) == SQLITE_NULL)
        return;
    const QByteArray folded = Fold(TextOf(values[0])).toUtf8();
    sqlite3_result_text64(context, folded.constData(), static_cast<sqlite3_uint64>(folded.size()),
                          SQLITE_TRANSIENT, SQLITE_UTF8);
}

void MatchFunction(sqlite3_context* context, int count, sqlite3_value** values)
{
    auto* lookFor = static_cast<LookFor*>(sqlite3_get_auxdata(context, 0));
    std::unique_ptr<LookFor> compiled;
    if (!lookFor) {
        compiled = std::make_unique<LookFor>(TextOf(values[0]));
        lookFor = compiled.get();
    }
    bool matches = lookFor->MatchesEverything();
    for (int i = 1; i < count && !matches; ++i)
        matches = lookFor->Matches(TextOf(values[i]));
    // The search text is the same for every row: kept until the statement ends.
    if (compiled)
        sqlite3_set_auxdata(context, 0, compiled.release(),
                            [](void* kept) { delete static_cast<LookFor*>(kept); });
    sqlite3_result_int(context, matches ? 1 : 0);
}

// Kind, content and parties; the words with blanks between them.
void EventWordsFunction(sqlite3_context* context, int count, sqlite3_value** values)
{
    QStringList parties;
    for (int i = 2; i < count; ++i)
        parties.append(TextOf(values[i]));
    const QByteArray words =
        EventWords(sqlite3_value_int(values[0]), TextOf(values[1]), parties).join(u' ').toUtf8();
    sqlite3_result_text64(context, words.constData(), static_cast<sqlite3_uint64>(words.size()),
                          SQLITE_TRANSIENT, SQLITE_UTF8);
}

void NowFunction(sqlite3_context* context, int, sqlite3_value**)
{
    const auto* facts = static_cast<const SessionFacts*>(sqlite3_user_data(context));
    const QDateTime now = facts->now ? facts->now() : QDateTime::currentDateTimeUtc();
    sqlite3_result_int64(context, now.toMSecsSinceEpoch());
}

void UserFunction(sqlite3_context* context, int, sqlite3_value**)
{
    const auto* facts = static_cast<const SessionFacts*>(sqlite3_user_data(context));
    const QByteArray user = facts->user.toUtf8();
    sqlite3_result_text64(context, user.constData(), static_cast<sqlite3_uint64>(user.size()),
                          SQLITE_TRANSIENT, SQLITE_UTF8);
}

} // namespace

void RegisterFunctions(const Handle& file, const SessionFacts& facts)
{
    sqlite3* handle = file.Get();
    constexpr int pure = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    auto* data = const_cast<SessionFacts*>(&facts);
    for (const int result : {sqlite3_create_function_v2(handle, "kyn_fold", 1, pure, nullptr, FoldFunction,
                                                        nullptr, nullptr, nullptr),
                             sqlite3_create_function_v2(handle, "kyn_match", -1, pure, nullptr, MatchFunction,
                                                        nullptr, nullptr, nullptr),
                             sqlite3_create_function_v2(handle, "kyn_event_words", -1, pure, nullptr,
                                                        EventWordsFunction, nullptr, nullptr, nullptr),
                             sqlite3_create_function_v2(handle, "kyn_now", 0, SQLITE_UTF8 | SQLITE_INNOCUOUS,
                                                        data, NowFunction, nullptr, nullptr, nullptr),
                             sqlite3_create_function_v2(handle, "kyn_user", 0, SQLITE_UTF8 | SQLITE_INNOCUOUS,
                                                        data, UserFunction, nullptr, nullptr, nullptr)})
        if (result != SQLITE_OK)
            throw file.MakeError(result);
}

} // namespace dao::sqlite
