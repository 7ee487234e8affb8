#include "radio/agent/ScadaReport.h"

#include "radio/agent/Views.h"

namespace {

constexpr qsizetype HeadLength = 2;
constexpr qsizetype BitCount = 8;

} // namespace

void PassScadaReport(const QString& text, const ScadaSource& source, IScadaView& view)
{
    const bool one = text.size() == HeadLength + BitCount;
    const bool both = text.size() == HeadLength + 2 * BitCount && text.startsWith(QLatin1String("B:"));
    if (both || (one && text.startsWith(QLatin1String("I:"))))
        view.UpdateScadaSensors(text.mid(HeadLength, BitCount), source);
    if (both || (one && text.startsWith(QLatin1String("O:"))))
        view.UpdateScadaControls(text.right(BitCount), source);
}
