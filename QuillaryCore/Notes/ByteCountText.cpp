#include "QuillaryCore/Notes/ByteCountText.h"

#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QLocale>

#include <cmath>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct SizeUnit {
    QLatin1StringView name;
    int decimals;
};

constexpr SizeUnit sizeUnits[] = {
    {"byte"_L1, 0}, {"KB"_L1, 0}, {"MB"_L1, 1}, {"GB"_L1, 2}, {"TB"_L1, 2}, {"PB"_L1, 2}, {"EB"_L1, 2},
};

double rounded(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    return std::round(value * scale) / scale;
}

} // namespace

QString byteCountText(qint64 bytes) {
    const SizeUnit* unit = std::begin(sizeUnits);
    auto value = static_cast<double>(bytes);
    // What rounds up to a thousand is one of the next unit.
    while (std::abs(rounded(value, unit->decimals)) >= 1000 && unit + 1 != std::end(sizeUnits)) {
        value /= 1000;
        ++unit;
    }
    value = rounded(value, unit->decimals);
    const QLocale locale(interfaceLocale());
    return locale.toString(value, 'g', 6) + u' ' + unit->name;
}

} // namespace quillary
