#include "core/desktop/ShowModal.h"

#include <QDialog>
#include <QPointer>

int ShowModal(QDialog& dialog, QWidget& owner)
{
    const Qt::WindowFlags flags = dialog.windowFlags();
    dialog.setParent(&owner, flags | Qt::Dialog);
    dialog.setWindowModality(Qt::WindowModal);
    const QPointer<QDialog> alive(&dialog);
    const int result = dialog.exec();
    if (alive)
        dialog.setParent(nullptr, flags);
    return result;
}
