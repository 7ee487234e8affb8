#include "addressing/TestPlans.h"
#include "ctl/CtlRun.h"
#include "support/Files.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QByteArray headings = "type,digits,prefix,base_ident,max_ident,fleet_name,notes\n";

QByteArray PlanCsv(const std::vector<FleetConfig>& fleets)
{
    QByteArray csv = headings;
    for (const FleetConfig& fleet : fleets) {
        for (const QByteArray& field :
             {QByteArray(fleet.fleetType == FleetType::Units ? "units" : "groups"),
              QByteArray::number(fleet.digits), QByteArray::number(fleet.prefix),
              QByteArray::number(fleet.baseIdent), QByteArray::number(fleet.maxIdent)})
            csv += field + ',';
        csv += "\"Fleet \"\"" + QByteArray::number(fleet.baseIdent) + "\"\", fire\",\"two\nlines\"\n";
    }
    return csv;
}

QByteArray OwnJson(const RadioNumbering& own)
{
    return QJsonDocument(QJsonObject{{"prefix", own.prefix},
                                     {"ident", own.ident},
                                     {"unitBaseIdent", own.unitBaseIdent},
                                     {"unitMaxIdent", own.unitMaxIdent},
                                     {"groupBaseIdent", own.groupBaseIdent},
                                     {"groupMaxIdent", own.groupMaxIdent},
                                     {"unitDigits", own.unitDigits},
                                     {"groupDigits", own.groupDigits}})
        .toJson();
}

QJsonObject ExpectedObject(const TableRow& vector)
{
    const auto text = [&](VectorField field) { return QString::fromStdString(vector.at(field)); };
    const auto number = [&](VectorField field) { return text(field).toInt(); };
    if (!vector.at(ErrorField).empty())
        return {{"dial", text(DialField)}, {"error", text(ErrorField)}};
    return {{"dial", text(DialField)},   {"prefix", number(PrefixField)}, {"ident", number(IdentField)},
            {"kind", number(KindField)}, {"digits", text(DigitsField)},   {"canonical", text(CanonicalField)},
            {"short", text(ShortField)}};
}

class Dial : public testing::Test {
protected:
    // Options for plan and own number.
    QStringList Options(const TestPlan& plan) const
    {
        QStringList options{"dial", "--numbering", "MPT1343", "--plan",
                            WriteFile(m_folder.filePath("plan.csv"), PlanCsv(plan.fleets))};
        if (plan.actionet) {
            const char* const models[] = {"SMALL", "MEDIUM", "LARGE", "EXTRA_LARGE"};
            options = QStringList{"dial",
                                  "--numbering",
                                  "ACTIONET",
                                  "--model",
                                  models[plan.actionet->model],
                                  "--fpp",
                                  QString::number(plan.actionet->FPP),
                                  "--mep",
                                  QString::number(plan.actionet->MEP)};
        }
        if (plan.own)
            options << "--own" << WriteFile(m_folder.filePath("own.json"), OwnJson(*plan.own));
        return options;
    }

    CtlRun RunWithPlan(const QByteArray& csv) const
    {
        return RunCtl({"dial", "--plan", WriteFile(m_folder.filePath("plan.csv"), csv), "200200121"});
    }

    CtlRun RunWithOwn(const QByteArray& json) const
    {
        return RunCtl({"dial", "--own", WriteFile(m_folder.filePath("own.json"), json), "21"});
    }

    QTemporaryDir m_folder;
};

TEST_F(Dial, EveryVectorThroughStandardInput)
{
    for (const std::string name : {"P1", "P2", "P3", "P4", "ANN-A", "ANN-B", "ANN-C", "ANN-D"}) {
        const bool actionet = PlanNamed(name).actionet.has_value();
        std::vector<QJsonObject> expected;
        QByteArray input;
        for (const TableRow& vector :
             ReadDialVectors(actionet ? "actionet.tsv" : "mpt1343.tsv", actionet ? 84 : 108)) {
            if (vector.at(PlanField) != name)
                continue;
            expected.push_back(ExpectedObject(vector));
            input += QByteArray::fromStdString(vector.at(DialField)) + (expected.size() % 2 ? "\n" : "\r\n");
        }
        const CtlRun run = RunCtl(Options(PlanNamed(name)), input);
        EXPECT_EQ(run.code, 0) << "an error is an answer, too";
        const QList<QByteArray> lines = run.out.trimmed().split('\n');
        ASSERT_EQ(lines.size(), static_cast<qsizetype>(expected.size())) << run.err.toStdString();
        for (qsizetype i = 0; i < lines.size(); ++i)
            EXPECT_EQ(QJsonDocument::fromJson(lines[i]).object(), expected[static_cast<std::size_t>(i)])
                << lines[i].toStdString();
    }
}

TEST_F(Dial, TextsAsArguments)
{
    const QStringList options = Options(PlanNamed("P1"));
    const CtlRun good = RunCtl(options + QStringList{"201/2510/32", "--", "-21"});
    EXPECT_EQ(good.out, R"({"dial":"201/2510/32","prefix":1,"ident":1032,"kind":0,"digits":"",)"
                        R"("canonical":"201251032","short":"201251032"})"
                        "\n"
                        R"({"dial":"-21","prefix":0,"ident":3,"kind":0,"digits":"",)"
                        R"("canonical":"200200121","short":"21"})"
                        "\n");
    EXPECT_EQ(good.err, "");
    EXPECT_EQ(good.code, 0);

    const CtlRun bad = RunCtl(options + QStringList{"21", "", "2\"\n"});
    EXPECT_TRUE(bad.out.startsWith(R"({"dial":"21","prefix":0,)")) << bad.out.toStdString();
    EXPECT_TRUE(bad.out.endsWith(R"({"dial":"","error":"Number is empty."})"
                                 "\n"
                                 R"({"dial":"2\"\n","error":"Number contains the invalid character '\"'."})"
                                 "\n"))
        << bad.out.toStdString();
    EXPECT_EQ(bad.err, "");
    EXPECT_EQ(bad.code, 0);
}

TEST_F(Dial, DoubtfulOwnFleetIsAWarning)
{
    TestPlan plan = PlanNamed("P1");
    plan.own->unitMaxIdent = 11;
    const CtlRun run = RunCtl(Options(plan) + QStringList{"21"});
    EXPECT_EQ(run.code, 0);
    EXPECT_TRUE(run.err.startsWith("veltorkynctl: warning: ")) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("200/2001")) << run.err.toStdString();
}

TEST_F(Dial, BadPlans)
{
    for (const TableRow& row : ReadTable("ctl.tsv", "Plans", 19)) {
        const QByteArray start = row.at(0) == "head" ? headings : "";
        ExpectFailure(RunWithPlan(start + QByteArray::fromStdString(row.at(1))), row.at(2).c_str());
    }
}

TEST_F(Dial, PlansAsOtherProgramsWriteThem)
{
    const QByteArray plans[] = {
        "\xEF\xBB\xBFtype,digits,prefix,base_ident,max_ident\r\nunits,2,0,2,71\r\n",
        "max_ident, base_ident ,prefix,Digits,TYPE\n 71 ,2,0,2,\"Units\"",
        "\"type\",\"digits\",\"prefix\",\"base_ident\",\"max_ident\"\n\n\"units\",\"2\",\"0\",\"2\",\"71\"\n",
    };
    for (const QByteArray& csv : plans) {
        const CtlRun run = RunWithPlan(csv);
        EXPECT_TRUE(run.out.contains(R"("canonical":"200200121")"))
            << run.out.toStdString() << run.err.toStdString();
        EXPECT_EQ(run.code, 0);
    }
}

TEST_F(Dial, BadOwnNumberings)
{
    QJsonObject whole = QJsonDocument::fromJson(OwnJson(*PlanNamed("P1").own)).object();
    const auto with = [&](const char* field, const QJsonValue& value) {
        QJsonObject object = whole;
        object.insert(QLatin1String(field), value);
        return QJsonDocument(object).toJson();
    };
    const std::pair<QByteArray, QByteArray> files[] = {
        {"", "own.json, line 1: "},
        {"{\n\"prefix\": 0,\n}", "own.json, line 3: "},
        {"[]", "own.json: this is not a JSON object"},
        {R"({"prefix":0})", "field \"ident\" is missing"},
        {with("prefix", "0"), "field \"prefix\" is not a whole number"},
        {with("ident", 2.5), "field \"ident\" is not a whole number"},
        {with("unitBaseIdent", QJsonValue::Null), "field \"unitBaseIdent\" is not a whole number"},
        {with("prefix", 128), "field \"prefix\" is not in 0..127"},
        {with("groupMaxIdent", -1), "field \"groupMaxIdent\" is not in 0..8191"},
        {with("groupDigits", 4), "field \"groupDigits\" is not in 2..3"},
    };
    for (const auto& [json, reason] : files)
        ExpectFailure(RunWithOwn(json), reason);
    EXPECT_EQ(RunWithOwn(with("comment", "more than asked for")).code, 0);
}

TEST_F(Dial, MissingFilesAreNamed)
{
    for (const QString option : {"--plan", "--own"}) {
        ExpectFailure(RunCtl({"dial", option, m_folder.filePath("nothing here"), "21"}), "nothing here: ");
        EXPECT_EQ(RunCtl({"dial", option, m_folder.path(), "21"}).code, 1) << "a folder";
    }
}

} // namespace
