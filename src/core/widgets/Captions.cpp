#include "core/widgets/Captions.h"

#include "core/texts/StringSource.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
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

QLabel* LabelOf(const QWidget& widget)
{
    for (QLabel* label : widget.parentWidget()->findChildren<QLabel*>(Qt::FindDirectChildrenOnly))
        if (label->buddy() == &widget)
            return label;
    return nullptr;
}

// Qt tells an aid for the blind of a box with a list what is chosen in it, and the label that stands for it:
// a box without one gets one that is not shown. The field inside has the same name.
void NameBox(QComboBox& box)
{
    QLabel* label = LabelOf(box);
    if (!label && !box.accessibleName().isEmpty()) {
        label = new QLabel(box.accessibleName(), box.parentWidget());
        label->setBuddy(&box);
        label->hide();
    }
    if (label && box.lineEdit() && box.lineEdit()->accessibleName().isEmpty())
        box.lineEdit()->setAccessibleName(label->text().remove(u'&'));
}

// Qt passes over the label of a list.
void NameList(QAbstractItemView& list)
{
    const QLabel* label = LabelOf(list);
    if (label && list.accessibleName().isEmpty())
        list.setAccessibleName(label->text().remove(u'&'));
}

} // namespace

void LoadCaptions(QWidget& window, const IStringSource& strings)
{
    FillAll(window, strings);
    for (QWidget* widget : window.findChildren<QWidget*>())
        FillAll(*widget, strings);
    for (QAction* action : window.findChildren<QAction*>())
        FillAll(*action, strings);
    NameLists(window);
}

void NameLists(QWidget& window)
{
    for (QComboBox* box : window.findChildren<QComboBox*>())
        NameBox(*box);
    for (QAbstractItemView* list : window.findChildren<QAbstractItemView*>())
        NameList(*list);
}
