// An image whose pixels lie row by row, three bytes each: one channel, a threshold, a transpose.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Adoption.hpp>

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <utility>
#include <vector>

using namespace foundation::vexadata;

int main() {
    const ArrayFactory factory;
    const std::size_t rows = 3;
    const std::size_t columns = 4;
    // Red, green and blue of each pixel, as cameras give them.
    std::vector<std::uint8_t> pixels(rows * columns * 3);
    for (std::size_t k = 0; k < pixels.size(); ++k) {
        pixels[k] = static_cast<std::uint8_t>(7 * k);
    }
    const TypedArray<std::uint8_t> image =
        vexa::client::fromVector({rows, columns, 3}, std::move(pixels), vexa::data::MemoryLayout::ROW_MAJOR);

    const auto green = readOnlyView<3>(image).page(1); // the elements themselves, nothing is copied
    std::cout << "green of the first pixels " << int(green(0, 0)) << ' ' << int(green(0, 1)) << '\n';

    // A view walks by its indices, whatever the layout: pixels and mask go together.
    TypedArray<bool> bright = factory.createArray<bool>({rows, columns});
    std::transform(green.begin(), green.end(), bright.begin(),
                   [](std::uint8_t value) { return value >= 128; });
    std::cout << bright << '\n';
    std::cout << std::count(bright.begin(), bright.end(), true) << " bright pixels\n";

    const auto turned = green.transposed();
    const auto upright =
        factory.createArray<std::uint8_t>({turned.extent(0), turned.extent(1)}, turned.begin(), turned.end());
    std::cout << upright << '\n';
}
