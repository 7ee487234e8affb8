#include "core/widgets/Captions.h"

#include "core/texts/StringSource.h"

#include <QAction>
#include <QVariant>
#include <QWidget>
#include <stdexcept>

namespace {

bool HasProperty(const QObject& object, const char* name)
{
    return object.metaObject()->indexOfProperty(name) >= 0;
}

// The property that shows an object's caption. A menu is a window too, and its title is what the menu bar
// shows.
const char* CaptionProperty(const QObject& object)
{
    if (HasProperty(object, "title"))
        return "title";
    if (HasProperty(object, "text"))
        return "text";
    return "windowTitle";
}

void Fill(QObject& object, const char* idProperty, const char* property, const IStringSource& strings)
{
    const QVariant id = object.property(idProperty);
    if (!id.isValid())
        return;
    if (!HasProperty(object, property))
        throw std::logic_error(object.objectName().toStdString() + " has no " + property);
    // A leading blank would put a caption out of line with those above and below; a trailing one keeps a
    // distance.
    QString text = strings.LoadString(id.toInt());
    while (text.startsWith(QLatin1Char(' ')))
        text.remove(0, 1);
    object.setProperty(property, text);
}

void FillAll(QObject& object, const IStringSource& strings)
{
    Fill(object, "textId", CaptionProperty(object), strings);
    Fill(object, "toolTipId", "toolTip", strings);
    Fill(object, "accessibleNameId", "accessibleName", strings);
    Fill(object, "placeholderId", "placeholderText", strings);
}

} // namespace

void LoadCaptions(QWidget& window, const IStringSource& strings)
{
    FillAll(window, strings);
    for (QWidget* widget : window.findChildren<QWidget*>())
        FillAll(*widget, strings);
    for (QAction* action : window.findChildren<QAction*>())
        FillAll(*action, strings);
}
