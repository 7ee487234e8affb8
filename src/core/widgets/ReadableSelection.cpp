#include "core/widgets/ReadableSelection.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double EnoughContrast = 4.5;

double Linear(double part)
{
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& color)
{
    return 0.2126 * Linear(color.redF()) + 0.7152 * Linear(color.greenF()) + 0.0722 * Linear(color.blueF());
}

} // namespace

double Contrast(const QColor& first, const QColor& second)
{
    const auto [darker, lighter] = std::minmax({Luminance(first), Luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QPalette WithReadableSelection(const QPalette& palette)
{
    QPalette readable = palette;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor back = palette.color(group, QPalette::Highlight);
        if (Contrast(back, palette.color(group, QPalette::HighlightedText)) < EnoughContrast) {
            const bool white = Contrast(back, Qt::white) > Contrast(back, Qt::black);
            readable.setColor(group, QPalette::HighlightedText, white ? Qt::white : Qt::black);
        }
    }
    return readable;
}
