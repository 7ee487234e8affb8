#include "mainwindow/lists/AddressesFromSelection.h"

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <algorithm>

std::optional<QString> AddressesFromSelection(const QAbstractItemView& list, int tagRole)
{
    QModelIndexList lines = list.selectionModel()->selectedRows();
    if (lines.isEmpty())
        return std::nullopt;
    std::sort(lines.begin(), lines.end());

    QString addresses;
    bool anyAdded = false;
    for (const QModelIndex& line : lines) {
        if (anyAdded)
            addresses += QLatin1Char(';');
        const QString tag = line.data(tagRole).toString();
        if (!tag.trimmed().isEmpty()) {
            addresses += tag;
            anyAdded = true;
        }
    }
    return addresses;
}
