// The SCADA panel: reports, commands, switches that end in every way, names and the unit.

#include "MainWindowStack.h"
#include "core/attention/AttentionBook.h"
#include "core/session/Registry.h"
#include "core/texts/FormatMessage.h"
#include "mainwindow/scada/ScadaModel.h"
#include "map27/codec/Messages.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTextDocumentFragment>

namespace {

class ScadaStack : public MainWindowStack {
public:
    ScadaStack()
    {
        Open();
        LogOn();
        Window().SelectTab(MainTabs::Tab::Scada);
        Find<QComboBox>("cmbScadaUnit").setEditText(QStringLiteral("Unit20"));
    }
    QListView& Controls() { return Find<QListView>("lvControls"); }
    // Item 0 first: "1" on, "0" off, "w" waits; "?" behind it when it is a ghost.
    QString Signs(const char* list)
    {
        QString signs;
        const auto& model = *Find<QListView>(list).model();
        for (int row = 0; row < model.rowCount(); ++row) {
            const QString picture = model.index(row, 0).data(ScadaModel::PictureRole).toString();
            signs += picture.endsWith(QLatin1String("on")) ? QLatin1Char('1')
                     : picture == QLatin1String("cwait")   ? QLatin1Char('w')
                                                           : QLatin1Char('0');
            if (model.index(row, 0).data(ScadaModel::GhostRole).toBool())
                signs += QLatin1Char('?');
        }
        return signs;
    }
    // From Unit20, or from Unit22 with ident 4.
    void Receive(const QString& text, qint16 ident = 2) { Q_EMIT control->TextReceived(text, 0, ident); }
    void Choose(const char* unit) { Find<QComboBox>("cmbScadaUnit").setEditText(QLatin1String(unit)); }
    QString Source(const char* label) { return Find<QLabel>(label).text(); }
    void Progress(qint16 code) { Q_EMIT control->MessageProgress(code, 0, 0, 2); }
    void DoubleClick(int row)
    {
        const QPoint place = Controls().visualRect(Controls().model()->index(row, 0)).center();
        QTest::mouseClick(Controls().viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QTest::mouseDClick(Controls().viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QCoreApplication::sendPostedEvents(&Find<QWidget>("picScada"));
    }
};

TEST(Scada, ShowsWhatReportsSay)
{
    ScadaStack stack;
    const QString unknown = QStringLiteral("0?0?0?0?0?0?0?0?");
    EXPECT_EQ(stack.Signs("lvSensors"), unknown) << "nothing is known before the first report";
    struct Case {
        const char* text;
        const char* sensors;
        const char* controls;
    };
    for (const Case& c :
         {Case{"B:00000000", "0?0?0?0?0?0?0?0?", "0?0?0?0?0?0?0?0?"},
          Case{"I:0000000011111111", "0?0?0?0?0?0?0?0?", "0?0?0?0?0?0?0?0?"},
          Case{"I:10000001", "10000001", "0?0?0?0?0?0?0?0?"}, Case{"O:00100011", "10000001", "11000100"},
          Case{"O:1x0?0000", "10000001", "00000?00?1"}, Case{"B:0000000011111111", "00000000", "11111111"},
          Case{"i:11111111", "00000000", "11111111"}, Case{" I:1111111", "00000000", "11111111"}}) {
        stack.Receive(QLatin1String(c.text));
        EXPECT_EQ(stack.Signs("lvSensors"), QLatin1String(c.sensors)) << c.text;
        EXPECT_EQ(stack.Signs("lvControls"), QLatin1String(c.controls)) << c.text;
    }
    EXPECT_EQ(stack.LogTexts().size(), 9) << "reports are logged, too, below the date";
}

TEST(Scada, EveryCommandHasItsStatusCode)
{
    ScadaStack stack;
    for (const auto& [button, code] : {std::pair("cmdALLOFF", 8), std::pair("cmdQrySensors", 9),
                                       std::pair("cmdALLON", 18), std::pair("cmdQryControls", 19)}) {
        stack.Click(button);
        EXPECT_EQ(stack.control->TakeOperations(),
                  QStringList(QStringLiteral("SendStatusMessage 0 2 %1").arg(code)));
        stack.Progress(192);
    }
    EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("0?0?0?0?0?0?0?0?")) << "only reports change them";
    stack.Receive(QStringLiteral("O:10000000"));
    for (const auto& [row, code] : {std::pair(0, 10), std::pair(6, 16), std::pair(7, 7), std::pair(0, 0)}) {
        stack.DoubleClick(row);
        EXPECT_EQ(stack.control->TakeOperations(),
                  QStringList(QStringLiteral("SendStatusMessage 0 2 %1").arg(code)));
        stack.DoubleClick(row); // it waits
        EXPECT_EQ(stack.control->TakeOperations(), QStringList());
        stack.Progress(192);
    }
    EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("00000010"));
    stack.LogOff();
    EXPECT_FALSE(stack.Find<QWidget>("cmdALLON").isEnabled());
    stack.control->TakeOperations();
    stack.DoubleClick(0);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
}

// A switch is shown as done or undone by its own answer and by no other.
TEST(Scada, ASwitchEndsWithItsOwnAnswerOnly)
{
    ScadaStack stack;
    const auto sendOther = [&] {
        stack.executive.SendText(QStringLiteral("22"), QStringLiteral("x"), false);
    };
    struct Case {
        const char* name;
        std::function<void()> happens;
        const char* signs; // of control 0, which was off and is told to switch on
        int warning = 0;
    };
    const Case cases[] = {
        {"delivered", [&] { stack.Progress(192); }, "10000000"},
        {"failed", [&] { stack.Progress(224); }, "00000000", 2202},
        {"cleared", [&] { Q_EMIT stack.control->TransactionCleared(0, 0); }, "w0000000"},
        {"reset", [&] { stack.executive.ResetTran(); }, "w0000000"},
        {"cleared, then another message delivered",
         [&] {
             Q_EMIT stack.control->TransactionCleared(0, 0);
             sendOther();
             stack.Progress(192);
         },
         "w0000000"},
        {"call, then another message failed",
         [&] {
             Q_EMIT stack.control->IncomingCall(0, 8, 0, 4);
             Q_EMIT stack.control->TransactionCleared(0, 0);
             sendOther();
             stack.Progress(224);
         },
         "w0000000", 2202},
        {"delivered, then another message failed",
         [&] {
             stack.Progress(192);
             sendOther();
             stack.Progress(224);
         },
         "10000000", 2202},
        {"cleared, then a report",
         [&] {
             Q_EMIT stack.control->TransactionCleared(0, 0);
             stack.Receive(QStringLiteral("O:00000001"));
         },
         "10000000"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        stack.Receive(QStringLiteral("O:00000000"));
        stack.DoubleClick(0);
        EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("w0000000"));
        if (c.warning != 0)
            stack.prompt.ExpectWarning(stack.Text(c.warning));
        c.happens();
        QCoreApplication::processEvents();
        stack.prompt.Finish();
        EXPECT_EQ(stack.Signs("lvControls"), QLatin1String(c.signs));
        // A control is switched where its state is seen, and nowhere else.
        for (const dao::AttentionRecord& entry : stack.console.attention->Entries())
            EXPECT_TRUE(entry.message == "x" || entry.again == dao::AttentionRecord::Again::Nothing);
        EXPECT_EQ(stack.executive.TransactionKind(), TransactionKind::None);
    }
    // Refused by a busy radio: it waits for a report.
    stack.Receive(QStringLiteral("O:00000000"));
    sendOther();
    stack.prompt.ExpectWarning(stack.Text(2068));
    stack.DoubleClick(3);
    stack.Progress(192);
    EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("000w0000"));
}

// What one outstation reports never stands as the state of another.
TEST(Scada, EachOutstationKeepsItsOwnValues)
{
    ScadaStack stack;
    const QString unknown = QStringLiteral("0?0?0?0?0?0?0?0?");
    EXPECT_TRUE(stack.Source("lblSensors").startsWith(QStringLiteral("Sensors: Unit20\nno report")));
    stack.Receive(QStringLiteral("I:00000011"), 4);
    EXPECT_EQ(stack.Signs("lvSensors"), unknown) << "of another outstation than the chosen one";
    stack.Receive(QStringLiteral("B:0000000100000000"));
    const QString reported = stack.Source("lblSensors");
    EXPECT_TRUE(reported.startsWith(QStringLiteral("Sensors: Unit20\nreported "))) << reported.toStdString();
    stack.DoubleClick(0);
    EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("w0000000"));

    stack.clock.Step(std::chrono::hours(1));
    stack.Choose("unit22");
    EXPECT_EQ(stack.Signs("lvSensors"), QStringLiteral("11000000"));
    EXPECT_EQ(stack.Signs("lvControls"), unknown);
    stack.Receive(QStringLiteral("O:10000000"), 4);
    stack.Progress(192); // of the switch at Unit20
    EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("00000001"));
    EXPECT_NE(stack.Source("lblControls").section(QLatin1Char('\n'), 1),
              reported.section(QLatin1Char('\n'), 1));

    stack.Choose("0200200120");
    EXPECT_EQ(stack.Signs("lvControls"), unknown) << "no such unit";
    stack.Choose("200200120");
    EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("10000000")) << "the same unit by its address";
    EXPECT_EQ(stack.Source("lblSensors"), reported);

    stack.Choose("");
    EXPECT_TRUE(stack.Source("lblControls").startsWith(QStringLiteral("Controls: Unit22\n")))
        << "it reported last";
    EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("00000001"));
    stack.prompt.ExpectWarning(stack.Text(5000));
    stack.DoubleClick(0);
    EXPECT_EQ(stack.Signs("lvControls"), QStringLiteral("00000001")) << "nobody was commanded";
    EXPECT_EQ(stack.Find<QComboBox>("cmbScadaUnit").count(), 2) << "those that reported can be chosen";
}

TEST(Scada, NamesAndUnitAreKept)
{
    ScadaStack stack;
    auto& sensors = stack.Find<QListView>("lvSensors");
    EXPECT_EQ(sensors.model()->index(2, 0).data().toString(), QStringLiteral("2")) << "unnamed";
    EXPECT_EQ(sensors.model()->index(2, 0).data(Qt::EditRole).toString(), QString());
    sensors.setFocus();
    sensors.setCurrentIndex(sensors.model()->index(2, 0));
    QTest::keyClick(&sensors, Qt::Key_F2);
    QTest::keyClicks(sensors.findChild<QLineEdit*>(), QStringLiteral("Door, north"));
    QTest::keyClick(sensors.findChild<QLineEdit*>(), Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(stack.settings.Read(QStringLiteral("scada"), QStringLiteral("2sensor"), {}),
              QStringLiteral("Door, north"));
    stack.Controls().setFocus();
    stack.Controls().setCurrentIndex(stack.Controls().model()->index(7, 0));
    QTest::keyClick(&stack.Controls(), Qt::Key_F2);
    QTest::keyClicks(stack.Controls().findChild<QLineEdit*>(), QStringLiteral("<b>Pump"));
    QTest::keyClick(stack.Controls().findChild<QLineEdit*>(), Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(stack.control->TakeOperations(), QStringList()) << "Enter ends the name and switches nothing";
    stack.CloseWindow();
    stack.Open();
    EXPECT_EQ(stack.Find<QListView>("lvSensors").model()->index(2, 0).data().toString(),
              QStringLiteral("Door, north"));
    EXPECT_EQ(stack.Controls().model()->index(7, 0).data().toString(), QStringLiteral("<b>Pump"));
    const QString tip = stack.Controls().model()->index(7, 0).data(Qt::ToolTipRole).toString();
    EXPECT_EQ(QTextDocumentFragment::fromHtml(tip).toPlainText(),
              QStringLiteral("Control 7 <b>Pump: Unknown"));
    EXPECT_EQ(stack.Find<QComboBox>("cmbScadaUnit").currentText(), QStringLiteral("Unit20"));
}

TEST(Scada, ACriticalControlAsksBeforeItIsSwitched)
{
    ScadaStack stack;
    stack.Receive("O:00000010");
    RegistryStore(stack.session, {{"scada_critical", "1; 3;x;99"}, {"scada_old_minutes", "15"}});
    stack.DoubleClick(0);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList{"SendStatusMessage 0 2 10"}) << "not marked";
    stack.Progress(map27::Type::MessagePositive);
    const auto ask = [&](int id, bool answer) {
        stack.prompt.ExpectConfirmation(
            FormatMessage(stack.strings, id, {id < 6447 ? "1" : "Unit20", "", "Unit20"}), answer);
    };
    ask(6446, false);
    stack.DoubleClick(1);
    ask(6448, false);
    stack.Click("cmdALLOFF");
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    ask(6446, true);
    stack.prompt.whileOpen = [&] { stack.Receive("O:00000000"); };
    stack.DoubleClick(1);
    stack.prompt.whileOpen = nullptr;
    EXPECT_EQ(stack.control->TakeOperations(), QStringList()) << "it is off meanwhile, which nobody has seen";
    ask(6445, true);
    stack.DoubleClick(1);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList{"SendStatusMessage 0 2 11"});
    stack.Progress(map27::Type::MessagePositive);
    ask(6447, true);
    stack.Click("cmdALLON");
    EXPECT_EQ(stack.control->TakeOperations(), QStringList{"SendStatusMessage 0 2 18"});
    stack.Progress(map27::Type::MessagePositive);
    // From elsewhere, too, and by the outstation's number as well.
    for (const char* party : {"Unit20", "20"}) {
        stack.prompt.ExpectConfirmation(FormatMessage(stack.strings, 6445, {"3", "", party}), false);
        stack.executive.SendStatus(party, 13);
    }
    EXPECT_EQ(stack.control->TakeOperations(), QStringList());
    stack.executive.SendStatus("Unit22", 13);
    EXPECT_EQ(stack.control->TakeOperations(), QStringList{"SendStatusMessage 0 4 13"}) << "no outstation";
    stack.Progress(map27::Type::MessagePositive);

    const auto isOld = [&] {
        stack.Choose("Unit20"); // as the timer does
        const QModelIndex item = stack.Controls().model()->index(0, 0);
        EXPECT_EQ(item.data(Qt::ForegroundRole).isValid(), stack.Source("lblControls").contains("(old)"));
        return item.data(Qt::AccessibleTextRole).toString().contains("(old)");
    };
    stack.clock.Step(std::chrono::minutes(15));
    stack.Choose("");
    EXPECT_FALSE(isOld());
    stack.clock.Step(std::chrono::seconds(1));
    stack.Choose("");
    EXPECT_TRUE(isOld());
    stack.Receive("O:00000000");
    EXPECT_FALSE(isOld());
}

} // namespace
