#include "setup/pages/RadioPage.h"

#include "core/settings/SerialDefaults.h"
#include "core/settings/SerialPortList.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/TextIds.h"
#include "setup/base/TextIds.h"

#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>

RadioPage::RadioPage(const SetUpServices& services)
    : SetUpPage(services, "pageRadio", SetUpText::RadioTitle, SetUpText::RadioAbout),
      m_port(new QComboBox(this)),
      m_speed(new QComboBox(this)),
      m_command(new QLineEdit(QStringLiteral("sudo usermod -aG dialout $USER"), this)),
      m_trial(services.makeControl, services.strings)
{
    m_port->setEditable(true);
    m_port->setCompleter(nullptr);
    m_port->setInsertPolicy(QComboBox::NoInsert);
    m_speed->addItem(Text(CoreText::Baud1200), 1200);
    m_speed->addItem(Text(CoreText::Baud9600), 9600);
    AddRow(SetUpText::Port, m_port, "cmbPort");
    auto* look = AddButton<QPushButton>(SetUpText::LookAgain, "cmdLookAgain");
    AddRow(SetUpText::Speed, m_speed, "cmbSpeed");
    m_test = AddButton<QPushButton>(SetUpText::TestRadio, "cmdTestRadio");
    m_command->setObjectName(QStringLiteral("txtCommand"));
    m_command->setAccessibleName(Text(SetUpText::CommandName));
    m_command->setReadOnly(true);
    AddWidget(m_command);
    m_copy = AddButton<QPushButton>(SetUpText::Copy, "cmdCopy");
    connect(m_port, &QComboBox::activated, this,
            [this](int item) { m_port->setEditText(m_port->itemData(item).toString()); });
    connect(look, &QPushButton::clicked, this, &RadioPage::ListPorts);
    connect(m_test, &QPushButton::clicked, this, &RadioPage::Test);
    connect(m_copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_command->text()); });
    connect(&m_trial, &RadioTrial::Answered, this, &RadioPage::ShowAnswer);
    connect(&m_trial, &RadioTrial::Failed, this, &RadioPage::ShowFailure);
    m_speed->setCurrentIndex(std::max(0, m_speed->findData(services.serial.DefaultBaud())));
    ListPorts();
    m_port->setEditText(services.serial.DefaultPort());
    Leave();
}

void RadioPage::ListPorts()
{
    const QString typed = m_port->currentText();
    m_port->clear();
    if (m_services.ports) {
        for (const SerialPortChoice& choice : m_services.ports->Ports()) {
            const QString text = choice.description.isEmpty()
                                     ? choice.port
                                     : FormatMessage(m_services.strings, CoreText::PortWithDevice,
                                                     {choice.port, choice.description});
            m_port->addItem(text, choice.port);
        }
    }
    m_port->setEditText(typed);
    Say(m_port->count() == 0 ? Text(SetUpText::NoPorts) : QString());
}

QString RadioPage::Port() const
{
    return m_port->currentText().trimmed();
}

void RadioPage::Test()
{
    if (m_trial.IsRunning()) {
        Leave();
        Say(Text(SetUpText::TestStopped));
        return;
    }
    if (Port().isEmpty()) {
        Say(Text(SetUpText::PortMissing));
        return;
    }
    Leave();
    Say(FormatMessage(m_services.strings, SetUpText::TestingRadio, {Port()}));
    m_test->setText(Text(SetUpText::StopTest));
    m_trial.Begin(Port(), m_speed->currentData().toInt());
}

void RadioPage::ShowAnswer(const RadioNumbering& numbering)
{
    Leave();
    Say(FormatMessage(m_services.strings, SetUpText::RadioAnswers,
                      {QString::number(numbering.prefix), QString::number(numbering.ident)}));
    Q_EMIT RadioAnswered(numbering);
}

void RadioPage::ShowFailure(const QString& reason)
{
    Leave();
    const QFileInfo device(Port());
    const bool forbidden = device.exists() && (!device.isReadable() || !device.isWritable());
    m_command->setVisible(forbidden);
    m_copy->setVisible(forbidden);
    Say(forbidden
            ? FormatMessage(m_services.strings, SetUpText::NotPermitted, {Port(), device.group(), reason})
            : reason);
}

void RadioPage::Leave()
{
    m_trial.Stop();
    m_test->setText(Text(SetUpText::TestRadio));
    m_command->hide();
    m_copy->hide();
}

QString RadioPage::Take(SetUpChoice& choice)
{
    if (Port().isEmpty())
        return Text(SetUpText::PortMissing);
    choice.port = Port();
    choice.baud = m_speed->currentData().toInt();
    return {};
}

void RadioPage::Skip(SetUpChoice& choice)
{
    choice.port.reset();
    choice.baud.reset();
}
