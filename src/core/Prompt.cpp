#include "core/Prompt.h"

#include "core/StringSource.h"
#include "core/TextIds.h"

#include <QApplication>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace {

// While a dialog closes no window is active for a moment; the box then belongs over the main window.
QWidget* MainWindow()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && qobject_cast<QMainWindow*>(window) != nullptr)
            return window;
    }
    return nullptr;
}

// The box is modal to the window that the operator is in; it goes when that window is destroyed.
QPointer<QMessageBox> MakeBox(QMessageBox::Icon icon, const QString& caption, const QString& text)
{
    QWidget* parent = QApplication::activeModalWidget();
    if (!parent)
        parent = QApplication::activeWindow();
    if (!parent)
        parent = MainWindow();
    QString lines = text;
    lines.replace("\r\n", "\n");
    QPointer<QMessageBox> box = new QMessageBox(icon, caption, lines, QMessageBox::NoButton, parent);
    box->setObjectName("promptBox");
    box->setTextFormat(Qt::PlainText);
    box->setWindowModality(parent ? Qt::WindowModal : Qt::ApplicationModal);
    return box;
}

QPushButton* AddButton(QMessageBox& box, const char* name, const QString& caption,
                       QMessageBox::ButtonRole role)
{
    QPushButton* button = box.addButton(caption, role);
    button->setObjectName(name);
    return button;
}

enum class Default { Yes, No };

bool Ask(const IStringSource& strings, const QString& caption, const QString& text, Default choice)
{
    const auto icon = choice == Default::Yes ? QMessageBox::Question : QMessageBox::Warning;
    const QPointer<QMessageBox> box = MakeBox(icon, caption, text);
    auto* yes = AddButton(*box, "cmdYes", strings.LoadString(core::textYes), QMessageBox::YesRole);
    auto* no = AddButton(*box, "cmdNo", strings.LoadString(core::textNo), QMessageBox::NoRole);
    box->setDefaultButton(choice == Default::Yes ? yes : no);
    box->setEscapeButton(no);
    box->exec();
    const bool agreed = box && box->clickedButton() == yes;
    delete box;
    return agreed;
}

void Show(const IStringSource& strings, const QString& caption, const QString& text, QMessageBox::Icon icon)
{
    const QPointer<QMessageBox> box = MakeBox(icon, caption, text);
    auto* ok = AddButton(*box, "cmdOk", strings.LoadString(core::textOk), QMessageBox::AcceptRole);
    box->setDefaultButton(ok);
    box->setEscapeButton(ok);
    box->exec();
    delete box;
}

} // namespace

bool Prompt::AskQuestion(const QString& text)
{
    return Ask(m_strings, m_appName, text, Default::Yes);
}

bool Prompt::AskConfirmation(const QString& text)
{
    return Ask(m_strings, m_appName, text, Default::No);
}

void Prompt::ShowWarning(const QString& text)
{
    Show(m_strings, m_appName, text, QMessageBox::Warning);
}

void Prompt::ShowError(const QString& text)
{
    Show(m_strings, m_appName, text, QMessageBox::Critical);
}

void Prompt::ShowInfo(const QString& text)
{
    Show(m_strings, m_appName, text, QMessageBox::Information);
}
