#include "mainwindow/scada/ScadaItems.h"

void ApplyReport(ScadaItems& items, const QString& bits)
{
    for (int i = 0; i < ScadaItemCount; ++i) {
        ScadaItem& item = items[static_cast<std::size_t>(i)];
        const qsizetype place = ScadaItemCount - 1 - i;
        const QChar bit = place < bits.size() ? bits[place] : QChar();
        item.unknown = bit != QLatin1Char('0') && bit != QLatin1Char('1');
        if (!item.unknown) {
            item.picture = bit == QLatin1Char('1') ? ScadaItem::Picture::On : ScadaItem::Picture::Off;
            item.outcome = Outcome::None;
        }
    }
}
