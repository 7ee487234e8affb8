#include "core/widgets/FormLayout.h"

#include <QAbstractButton>
#include <QDialog>
#include <QLabel>
#include <QLayout>

void GrowToContents(QDialog& dialog)
{
    QLayout* layout = dialog.layout();
    layout->activate();
    const QSize size = dialog.isVisible() ? dialog.size() : dialog.sizeHint();
    const int needed = layout->totalHeightForWidth(size.width());
    dialog.resize(size.width(), std::max(size.height(), needed));
}

void ShowMessageLine(QDialog& dialog, QLabel& line, const QString& text)
{
    line.setText(text);
    GrowToContents(dialog);
}

void MakeNarrow(QAbstractButton& button)
{
    button.setMaximumWidth(button.sizeHint().height() * 3 / 2);
}
