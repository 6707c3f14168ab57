#include "widgets/decor/NamedColors.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

struct NamedColor
{
    QLatin1String name;
    QRgb rgb;
    bool forText; ///< offered for text too, which light gray is too faint for
};

// Green is the dark one: text and thin lines in pure green cannot be read on a light ground.
constexpr std::array kColors{
    NamedColor{QLatin1String("Black"), qRgb(0, 0, 0), true},
    NamedColor{QLatin1String("Gray"), qRgb(120, 120, 120), true},
    NamedColor{QLatin1String("Light Gray"), qRgb(180, 180, 180), false},
    NamedColor{QLatin1String("White"), qRgb(255, 255, 255), true},
    NamedColor{QLatin1String("Red"), qRgb(255, 0, 0), true},
    NamedColor{QLatin1String("Blue"), qRgb(0, 0, 255), true},
    NamedColor{QLatin1String("Green"), qRgb(0, 128, 0), true},
};

} // namespace

QColor namedColor(const QString& name)
{
    const auto* const found = std::find_if(kColors.begin(), kColors.end(),
                                           [&](const NamedColor& each) { return each.name == name; });
    return found != kColors.end() ? QColor(found->rgb) : QColor(Qt::black);
}

QStringList colorNames()
{
    QStringList names;
    std::transform(kColors.begin(), kColors.end(), std::back_inserter(names),
                   [](const NamedColor& each) { return QString(each.name); });
    return names;
}

QStringList textColorNames()
{
    QStringList names;
    for (const NamedColor& each : kColors) {
        if (each.forText)
            names.append(each.name);
    }
    return names;
}
