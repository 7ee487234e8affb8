#include "mainwindow/scada/ScadaGuardMenu.h"

#include "core/desktop/Prompt.h"
#include "core/texts/Errors.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/scada/ScadaGuard.h"

#include <QActionGroup>
#include <QMenu>

namespace {

constexpr int HourMinutes = 60;
constexpr int Choices[] = {0, 5, 15, 30, HourMinutes, 4 * HourMinutes, 24 * HourMinutes};

QString CaptionOf(const IStringSource& strings, int minutes)
{
    if (minutes == 0)
        return strings.LoadString(MainText::OldNever);
    const bool hours = minutes >= HourMinutes && minutes % HourMinutes == 0;
    return FormatMessage(strings, hours ? MainText::OldHours : MainText::OldMinutes,
                         {QString::number(hours ? minutes / HourMinutes : minutes)});
}

} // namespace

void ScadaGuardMenu::PopUp(QWidget& owner, const QPoint& place, int control)
{
    const auto attempt = [self = *this](const std::function<void()>& store) {
        try {
            store();
            self.changed();
        } catch (const std::exception& failure) {
            self.prompt.ShowError(DescribeError(failure, self.strings));
        }
    };
    auto* menu = new QMenu(&owner);
    menu->setObjectName(QStringLiteral("mnuScadaGuard"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    ScadaGuard& marks = guard;
    if (control >= 0) {
        QAction* critical = menu->addAction(strings.LoadString(MainText::MarkCritical));
        critical->setObjectName(QStringLiteral("miCritical"));
        critical->setCheckable(true);
        critical->setChecked(marks.IsCritical(control));
        QObject::connect(critical, &QAction::triggered, &owner, [attempt, &marks, control](bool on) {
            attempt([&] { marks.MarkCritical(control, on); });
        });
    }
    QMenu* old = menu->addMenu(strings.LoadString(MainText::OldAfter));
    auto* group = new QActionGroup(old);
    for (const int minutes : Choices) {
        QAction* choice = old->addAction(CaptionOf(strings, minutes));
        choice->setCheckable(true);
        choice->setChecked(marks.MinutesUntilOld() == minutes);
        group->addAction(choice);
        QObject::connect(choice, &QAction::triggered, &owner,
                         [attempt, &marks, minutes] { attempt([&] { marks.SetMinutesUntilOld(minutes); }); });
    }
    menu->popup(place);
}
