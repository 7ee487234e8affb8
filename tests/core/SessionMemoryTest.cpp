// What the session has read of the database answers as the database itself would.

#include "support/TestDatabase.h"

#include "core/session/Registry.h"
#include "dao/base/Error.h"
#include "support/QtPrinters.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

void Add(dao::Database& database, const QString& callsign, const QString& ident, int type = 1)
{
    const auto rows = database.OpenTable("address", true);
    rows->AddNew();
    rows->SetField("callsign", callsign);
    rows->SetField("IDENT", ident);
    rows->SetField("Type", type);
    rows->Update();
}

std::optional<QString> Seek(dao::Database& database, const char* index, const QString& key,
                            const char* wanted)
{
    try {
        const auto rows = database.OpenTable("address");
        rows->SetIndex(index);
        rows->Seek(key);
        return rows->NoMatch() ? std::nullopt : std::optional(rows->Field(wanted).toString());
    } catch (const dao::Error&) {
        return {};
    }
}

TEST(SessionMemory, FindsWhatTheDatabaseFinds)
{
    const TestDatabase files;
    TestSession session(files);
    const std::pair<QString, QString> entries[] = {
        {"Unit 1", "200200101"},
        {"UNIT 1", "200200102"}, // refused: the same callsign
        {"Unit 2", "200200101"}, // refused: the same number
        {"", "200200103"},
        {"Unit 3", ""},
        {"Unit 1 ", "ab12"},
        {" Unit 1", "AB12"},
        {"Unit  1", " 7"},
        {"x", "7 "},
        {"Ärzte", "ä"},
        {"a\u0308rzte 2", "a\u0308"},
        {"straße", "ß"},
        {"STRASSE", "SS"},
        {"Σίσυφος", "\U0001F692"},
        {"ΣΊΣΥΦΟΣ", "refused"},
        {"İstanbul", "dotted"},
        {"istanbul", "plain"},
        {"ﬁre", "ligature"},
        {"\U00010400", "\U00010428"},
        {QString("n") + QChar::Null, "nul"},
        {"nul", QString("n") + QChar::Null},
    };
    QStringList keys{{}, "", " ", "1", "Nobody", QString(QChar(0xD83D)), QString(QChar::Null)};
    for (const auto& [callsign, ident] : entries) {
        try {
            Add(session.Database(), callsign, ident);
        } catch (const dao::Error&) {
        }
        for (const QString& text : {callsign, ident})
            keys << text << text.toUpper() << text.toLower() << text.trimmed() << text + ' ' << ' ' + text
                 << text + QChar::Null << text.normalized(QString::NormalizationForm_D)
                 << text.normalized(QString::NormalizationForm_C)
                 << text.normalized(QString::NormalizationForm_KC);
    }
    session.Changes().TellOwn("address");
    const Directory& memory = session.Memory().Addresses();
    EXPECT_GE(memory.Size(), 14u);
    for (const QString& key : std::as_const(keys)) {
        const std::string shown = key.toUtf8().toPercentEncoding().toStdString();
        EXPECT_EQ(memory.CallsignOf(key), Seek(session.Database(), "i_ident", key, "callsign")) << shown;
        EXPECT_EQ(memory.IdentOf(key), Seek(session.Database(), "i_callsign", key, "IDENT")) << shown;
    }
}

// Of the console itself, of another one, of another one while the database cannot be read, and of the logoff.
TEST(SessionMemory, FollowsChangesAndOutlastsTheDatabase)
{
    const TestDatabase files;
    TestSession session(files);
    const auto setting = [&] { return session.Memory().Setting("radio_onduty", "1"); };
    const auto callsign = [&](const char* ident) {
        return session.Memory().Addresses().CallsignOf(ident).value_or("-");
    };
    EXPECT_EQ(setting(), "1");
    RegistrySet(session, "radio_onduty", "3");
    EXPECT_EQ(setting(), "3");
    RegistryStore(session, {{"radio_onduty", "4"}});
    int uses = 0;
    session.onUse = [&] { ++uses; };
    QCoreApplication::sendPostedEvents(); // the next radio event comes after this
    EXPECT_EQ(uses, 1);
    EXPECT_EQ(setting(), "4");
    EXPECT_EQ(uses, 1);

    const auto other = files.Open();
    const auto told = [&](const char* ident, int longest = 5000) {
        return QTest::qWaitFor(
            [&] {
                try {
                    session.Changes().MayHaveChanged();
                } catch (const Error&) {
                }
                return callsign(ident) != "-";
            },
            longest);
    };
    Add(other->Database(), "Late", "1");
    EXPECT_TRUE(told("1"));
    // A failed reading leaves what was read, and is made good at the next reason to look.
    Add(other->Database(), "Later", "2");
    uses = 0;
    session.onUse = [&] {
        if (TestServer::IsWanted() || ++uses > 1) // the look itself
            throw Error(ErrorCode::General, "away");
    };
    EXPECT_FALSE(told("2", 200));
    EXPECT_EQ(callsign("2") + callsign("1"), "-Late");
    session.onUse = nullptr;
    EXPECT_TRUE(told("2"));
    session.Logoff();
    EXPECT_EQ(callsign("1") + setting(), "-1");
}

} // namespace
