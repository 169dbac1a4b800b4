// Strings with missing entries.
#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <iostream>
#include <stdexcept>

using namespace foundation::vexadata;

int main() {
    ArrayFactory factory;
    // A new string array is all missing, which is not the same as empty.
    TypedArray<String> moods = factory.createArray<String>({4, 1});
    moods[0] = u"fröhlich";
    moods[1] = "calm";
    moods[3] = "";

    const auto missing =
        std::count_if(moods.begin(), moods.end(), [](const auto& mood) { return !mood.has_value(); });
    std::cout << missing << " missing, "
              << (moods[3].has_value() ? "the last one empty" : "the last one missing") << '\n';

    std::cout << std::boolalpha;
    std::cout << "calm: " << (moods[1] == "calm") << ", " << (moods[1] == u"calm") << '\n';
    std::cout << "missing equals empty text: " << (moods[2] == "")
              << ", equals another element: " << (moods[2] == moods[2]) << '\n';

    const String maybe = moods[2]; // a value that may hold nothing
    std::cout << "read as a value: " << (maybe ? "there" : "nothing") << '\n';
    try {
        const std::u16string text = moods[2];
    } catch (const std::runtime_error& error) {
        std::cout << error.what() << '\n';
    }
    try {
        std::cout << moods[0].toAscii() << '\n';
    } catch (const NonAsciiCharInRequestedAsciiOutputException& error) {
        std::cout << error.what() << '\n';
    }

    for (auto mood : moods) { // handles to the elements: writing through them writes the array
        if (!mood.has_value()) {
            mood = "unknown";
        }
    }
    std::cout << moods[2].toAscii() << '\n';
    moods[1] = std::nullopt;
    std::cout << "calm again: " << moods[1].has_value() << '\n';
}
