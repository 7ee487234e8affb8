#pragma once

#include "admin/AdminServices.h"
#include "core/eventlog/EventLog.h"
#include "core/settings/Settings.h"
#include "core/texts/StringSourceImpl.h"
#include "radio/base/StatusTexts.h"
#include "radio/facade/FleetDataSource.h"
#include "radio/facade/Map27Executive.h"
#include "support/DialogDriver.h"
#include "support/FakeBeeper.h"
#include "support/FakeClock.h"
#include "support/FakeMap27Control.h"
#include "support/QtPrinters.h"
#include "support/ScriptedPrompt.h"
#include "support/TestDatabase.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QLineEdit>
#include <gtest/gtest.h>

// What the administration windows work with: a real database, the administrator "admin" logged on, the radio
// connected with a plan of units 200200120.. and groups 200550090...
class AdminTest : public testing::Test {
protected:
    AdminTest()
    {
        AddRow("fleet", {{"fleet_name", "units"},
                         {"fleet_type", 1},
                         {"digits", 2},
                         {"prefix", 0},
                         {"base_ident", 2},
                         {"max_ident", 71}});
        AddRow("fleet", {{"fleet_name", "groups"},
                         {"fleet_type", 2},
                         {"digits", 2},
                         {"prefix", 0},
                         {"base_ident", 7000},
                         {"max_ident", 7009}});
        control->radioIdent = 3;
        control->unitBase = 2;
        control->unitMax = 71;
        executive.Connect();
        Q_EMIT control->NumberingReceived();
    }

    AdminServices Services() { return {session, prompt, executive, strings}; }
    QString Text(int id) const { return strings.LoadString(id); }

    void AddRow(const char* table, std::initializer_list<std::pair<const char*, QVariant>> fields)
    {
        const auto rows = session.Database().OpenTable(QLatin1String(table));
        rows->AddNew();
        for (const auto& [name, value] : fields)
            rows->SetField(QLatin1String(name), value);
        rows->Update();
    }
    // Fields of all rows of a table, joined by "|"; null as "-".
    QStringList Rows(const char* table, const QStringList& fields)
    {
        QStringList lines;
        const auto rows = session.Database().OpenTable(QLatin1String(table));
        for (; !rows->Eof(); rows->MoveNext()) {
            QStringList line;
            for (const QString& field : fields) {
                const QVariant value = rows->Field(field);
                line.append(value.isNull() ? QStringLiteral("-") : value.toString());
            }
            lines.append(line.join('|'));
        }
        return lines;
    }
    // The lines of a list as it shows them, columns joined by "|".
    static QStringList Lines(QWidget& window, const char* list)
    {
        QStringList lines;
        const auto* model = driver::Child<QAbstractItemView>(window, QLatin1String(list)).model();
        for (int row = 0; row < model->rowCount(); ++row) {
            QStringList line;
            for (int column = 0; column < model->columnCount(); ++column)
                line.append(model->index(row, column).data().toString());
            lines.append(line.join('|'));
        }
        return lines;
    }
    static void Select(QWidget& window, const char* list, std::initializer_list<int> rows)
    {
        auto& view = driver::Child<QAbstractItemView>(window, QLatin1String(list));
        view.clearSelection();
        for (const int row : rows) {
            const QModelIndex item = view.model()->index(row, 0);
            view.selectionModel()->setCurrentIndex(item,
                                                   QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
    static QString Shown(QWidget& window, const char* field)
    {
        auto& widget = driver::Child<QWidget>(window, QLatin1String(field));
        return widget
            .property(widget.metaObject()->indexOfProperty("currentText") < 0 ? "text" : "currentText")
            .toString();
    }

    static dao::OpenOptions Impatient()
    {
        dao::OpenOptions options = TestDatabase::Options();
        options.busyTimeout = std::chrono::milliseconds(50);
        return options;
    }

    QTemporaryDir folder;
    CStringSourceImpl source{QStringList{}};
    const IStringSource& strings = source.CreateStringSource(QStringLiteral("CKYN"));
    TestDatabase database;
    FakeClock clock;
    Settings settings{folder.filePath(QStringLiteral("test.ini")), strings};
    TestSession session{database, Impatient()};
    ScriptedPrompt prompt;
    FakeBeeper beeper;
    StatusTexts statusTexts{strings};
    EventLog eventLog{session, strings};
    FleetDataSource fleetData{session, strings};
    FakeMap27Control* control = new FakeMap27Control; // owned by the facade
    Map27Executive executive{
        RadioServices{strings, prompt, settings, session, fleetData, statusTexts, eventLog, clock, beeper},
        std::unique_ptr<Map27Control>(control)};
};
