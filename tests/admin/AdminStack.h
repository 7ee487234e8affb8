#pragma once

#include "admin/AdminServices.h"
#include "support/DialogDriver.h"
#include "support/QuietRadio.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QLineEdit>
#include <gtest/gtest.h>

// What the administration windows work with: a real database, the administrator "admin" logged on, the radio
// connected with a plan of units 200200120.. and groups 200550090...
class AdminTest : public testing::Test, protected QuietRadioStack {
protected:
    AdminTest() : QuietRadioStack(Impatient())
    {
        AddRow("fleet", {{"fleet_name", "groups"},
                         {"fleet_type", 2},
                         {"digits", 2},
                         {"prefix", 0},
                         {"base_ident", 7000},
                         {"max_ident", 7009}});
        executive.Connect();
        Q_EMIT control->NumberingReceived();
    }

    AdminServices Services() { return {session, prompt, executive, strings}; }

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
};
