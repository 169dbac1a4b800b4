#include "Summary.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace vexa::inspect {

namespace {

double medianOf(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 == 1) return *middle;
    return std::midpoint(*std::max_element(values.begin(), middle), *middle);
}

/// In extended precision: the sum of many doubles neither overflows nor loses the digits that are shown.
double meanOf(const std::vector<double>& values) {
    const long double sum = std::accumulate(values.begin(), values.end(), 0.0L);
    return static_cast<double>(sum / static_cast<long double>(values.size()));
}

struct Extent {
    double least = std::numeric_limits<double>::infinity();
    double greatest = -std::numeric_limits<double>::infinity();
    bool whole = true;
};

Extent finiteExtent(const std::vector<double>& values) {
    Extent extent;
    for (const double value : values) {
        if (!std::isfinite(value)) continue;
        extent.least = std::min(extent.least, value);
        extent.greatest = std::max(extent.greatest, value);
        extent.whole = extent.whole && value == std::floor(value);
    }
    return extent;
}

std::size_t numberOfBins(const Extent& extent, std::size_t most) {
    if (extent.least > extent.greatest) return 0;
    if (extent.least == extent.greatest) return 1;
    const double wholeNumbers = extent.greatest - extent.least + 1;
    const bool few = extent.whole && wholeNumbers < static_cast<double>(most);
    return few ? static_cast<std::size_t>(wholeNumbers) : most;
}

} // namespace

Summary summarise(std::vector<double>& values) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (values.empty()) return {none, none, none, none};
    const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
    Summary summary{*least, none, meanOf(values), *greatest};
    summary.median = medianOf(values);
    return summary;
}

std::vector<std::size_t> countBins(const std::vector<double>& values, std::size_t most) {
    const Extent extent = finiteExtent(values);
    std::vector<std::size_t> bins(numberOfBins(extent, most));
    // Halves, because the width of the extent may exceed the largest double.
    const double halfWidth = extent.greatest / 2 - extent.least / 2;
    const double perHalf = static_cast<double>(bins.size()) / halfWidth;
    for (const double value : values) {
        if (!std::isfinite(value)) continue;
        const double place = (value / 2 - extent.least / 2) * perHalf;
        ++bins[place < static_cast<double>(bins.size()) ? static_cast<std::size_t>(place) : bins.size() - 1];
    }
    return bins;
}

std::string barPicture(const std::vector<std::size_t>& bins) {
    constexpr std::array blocks{" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    if (bins.empty()) return {};
    const std::size_t fullest = std::max<std::size_t>(1, *std::max_element(bins.begin(), bins.end()));
    std::string picture;
    for (const std::size_t bin : bins) {
        // Rounded up: a bin with a single value still shows.
        const double eighths = std::ceil(static_cast<double>(bin) * 8 / static_cast<double>(fullest));
        picture += blocks[static_cast<std::size_t>(eighths)];
    }
    return picture;
}

std::string horizontalBar(std::size_t count, std::size_t most, std::size_t width) {
    constexpr std::array partial{"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
    const double share = static_cast<double>(count) / static_cast<double>(most);
    const auto eighths = static_cast<std::size_t>(std::ceil(share * static_cast<double>(8 * width)));
    std::string bar;
    for (std::size_t k = 0; k < eighths / 8; ++k)
        bar += "█";
    return bar + partial[eighths % 8];
}

const char* shade(std::size_t count, std::size_t most) {
    constexpr std::array shades{" ", "░", "▒", "▓", "█"};
    const double share = static_cast<double>(count) / static_cast<double>(most);
    return shades[static_cast<std::size_t>(std::ceil(share * (shades.size() - 1)))];
}

} // namespace vexa::inspect
