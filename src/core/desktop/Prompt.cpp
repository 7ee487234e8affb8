#include "core/desktop/Prompt.h"

#include "core/desktop/KeyGuard.h"
#include "core/texts/StringSource.h"
#include "core/texts/TextIds.h"

#include <QApplication>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace {

// Nobody reads a box in less.
constexpr std::chrono::milliseconds LookingTime{250};

// While a dialog closes, no window is active for a moment; the box then belongs in front of the main window.
QWidget* MainWindow()
{
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && qobject_cast<QMainWindow*>(window) != nullptr)
            return window;
    return nullptr;
}

// The window that has to wait for the answer. It is never that of a radio call, which stays on top and usable
// whatever is being asked.
QWidget* Owner()
{
    QWidget* owner = QApplication::activeModalWidget();
    if (!owner)
        owner = QApplication::activeWindow();
    if (!owner || owner->windowFlags().testFlag(Qt::WindowStaysOnTopHint))
        owner = MainWindow();
    return owner;
}

QPushButton* AddButton(QMessageBox& box, const char* name, const QString& caption,
                       QMessageBox::ButtonRole role)
{
    QPushButton* button = box.addButton(caption, role);
    button->setObjectName(name);
    return button;
}

} // namespace

// The box goes away when its owner is destroyed.
QPointer<QMessageBox> Prompt::MakeBox(QMessageBox::Icon icon, const QString& text) const
{
    QWidget* owner = Owner();
    // A box of a minimised window would not be shown.
    if (owner && owner->isMinimized())
        owner->setWindowState(owner->windowState() & ~Qt::WindowMinimized);
    QString lines = text;
    lines.replace("\r\n", "\n");
    QPointer<QMessageBox> box = new QMessageBox(icon, m_appName, lines, QMessageBox::NoButton, owner);
    box->setObjectName("promptBox");
    box->setTextFormat(Qt::PlainText);
    box->setWindowModality(owner ? Qt::WindowModal : Qt::ApplicationModal);
    new KeyGuard(*box, m_clock, LookingTime);
    return box;
}

bool Prompt::Ask(Kind kind, const QString& text) const
{
    const auto icon = kind == Kind::Confirmation ? QMessageBox::Warning : QMessageBox::Question;
    const QPointer<QMessageBox> box = MakeBox(icon, text);
    auto* yes = AddButton(*box, "cmdYes", m_strings.LoadString(CoreText::Yes), QMessageBox::YesRole);
    // Given a No in that role, the box would take Esc to mean it.
    const auto role = kind == Kind::Choice ? QMessageBox::DestructiveRole : QMessageBox::NoRole;
    auto* no = AddButton(*box, "cmdNo", m_strings.LoadString(CoreText::No), role);
    box->setDefaultButton(kind == Kind::Confirmation ? no : yes);
    if (kind == Kind::Choice)
        box->setWindowFlag(Qt::WindowCloseButtonHint, false);
    else
        box->setEscapeButton(no);
    box->exec();
    const bool agreed = box && box->clickedButton() == yes;
    delete box;
    return agreed;
}

void Prompt::Show(QMessageBox::Icon icon, const QString& text) const
{
    const QPointer<QMessageBox> box = MakeBox(icon, text);
    auto* ok = AddButton(*box, "cmdOk", m_strings.LoadString(CoreText::Ok), QMessageBox::AcceptRole);
    box->setDefaultButton(ok);
    box->setEscapeButton(ok);
    box->exec();
    delete box;
}

bool Prompt::AskQuestion(const QString& text)
{
    return Ask(Kind::Question, text);
}

bool Prompt::AskConfirmation(const QString& text)
{
    return Ask(Kind::Confirmation, text);
}

bool Prompt::AskChoice(const QString& text)
{
    return Ask(Kind::Choice, text);
}

void Prompt::ShowWarning(const QString& text)
{
    Show(QMessageBox::Warning, text);
}

void Prompt::ShowError(const QString& text)
{
    Show(QMessageBox::Critical, text);
}

void Prompt::ShowInfo(const QString& text)
{
    Show(QMessageBox::Information, text);
}
