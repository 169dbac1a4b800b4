// String arrays, whose elements may be missing.
#include "World.hpp"

#include <algorithm>

namespace vexa::fuzz {

namespace {

class Strings final : public Model {
public:
    Strings(Dims dims, std::vector<String> elements)
        : Model(ArrayType::STRING, std::move(dims)), elements_(std::move(elements)) {}

    std::unique_ptr<Model> clone() const override { return std::make_unique<Strings>(*this); }

    void act(World& world, Array& array) override {
        Input& input = world.input;
        switch (input.below(6)) {
        case 0:
            return read(input, array);
        case 1:
            return writeNarrow(input, array);
        case 2:
            return fillMissing(input, array);
        case 3:
            return copyElement(input, array);
        case 4:
            return readAsText(array);
        default:
            operation = "strings: write through indices";
            as<TypedArray<String>>(array, [&](TypedArray<String>& typed) { write(input, typed); });
        }
    }

    void writeThrough(World& world, Reference<Array> held) override {
        operation = "strings inside: write";
        Reference<TypedArray<String>> typed(held);
        write(world.input, typed);
    }

protected:
    void checkElements(const Array& array) const override {
        const TypedArray<String> typed = array;
        std::size_t k = 0;
        for (const auto& element : typed) {
            require(k < elements_.size(), "the walk is long");
            const String& wanted = elements_[k++];
            const String found = element;
            require(found == wanted && element.has_value() == wanted.has_value(), "another string");
            require(element == std::u16string_view(wanted.value_or(u"")), "comparison with the text");
        }
        require(k == elements_.size(), "the walk is short");
    }
    Likeness compareElements(const Model& other) const override {
        return compareAll(elements_, static_cast<const Strings&>(other).elements_,
                          [](const String& a, const String& b) {
                              return a != b ? Likeness::different : a ? Likeness::equal : Likeness::doubtful;
                          });
    }

private:
    static String anyString(Input& input) { return input.below(4) == 0 ? String() : String(input.text()); }

    template <class Handle>
    void write(Input& input, Handle& typed) {
        const Indices indices = input.indices(dims_);
        const String value = anyString(input);
        const Place at = place(indices);
        if (succeeds(at.error, [&] { atIndices(typed, indices, [&](auto& ref) { ref = value; }); })) {
            elements_[at.position] = value;
        }
    }

    void read(Input& input, const Array& array) const {
        operation = "strings: read an element";
        const TypedArray<String> typed = array;
        const Indices indices = input.indices(dims_);
        const Place at = place(indices);
        requireOutcome(at.error, outcomeOf([&] {
                           atIndices(typed, indices, [&](auto& ref) {
                               const String found = ref;
                               require(found == elements_[at.position], "another string");
                           });
                       }));
    }

    void writeNarrow(Input& input, Array& array) {
        operation = "strings: write narrow text";
        if (isEmpty()) {
            return;
        }
        const Indices indices = input.validIndices(dims_);
        const std::string text = input.narrow();
        const bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return c >= 0; });
        const Outcome wanted = ascii ? nullptr : thrown<NonAsciiCharInInputDataException>;
        as<TypedArray<String>>(array, [&](TypedArray<String>& typed) {
            if (succeeds(wanted, [&] { atIndices(typed, indices, [&](auto& ref) { ref = text; }); })) {
                elements_[place(indices).position] = std::u16string(text.begin(), text.end());
            }
        });
    }

    void fillMissing(Input& input, Array& array) {
        operation = "strings: fill what is missing in a loop";
        const String value = anyString(input);
        as<TypedArray<String>>(array, [&](TypedArray<String>& typed) {
            for (auto element : typed) {
                if (!element.has_value()) {
                    element = value;
                }
            }
        });
        std::replace(elements_.begin(), elements_.end(), String(), value);
    }

    void copyElement(Input& input, Array& array) {
        operation = "strings: assign one element to another";
        if (isEmpty()) {
            return;
        }
        const std::size_t from = input.below(elements_.size());
        const std::size_t to = input.below(elements_.size());
        as<TypedArray<String>>(array, [&](TypedArray<String>& typed) {
            const auto begin = typed.begin();
            const auto source = begin[static_cast<std::ptrdiff_t>(from)];
            begin[static_cast<std::ptrdiff_t>(to)] = source;
        });
        elements_[to] = elements_[from];
    }

    void readAsText(const Array& array) const {
        operation = "strings: the text of a scalar";
        const Outcome wanted = dims_ != Dims{1, 1} ? thrown<InvalidArrayTypeException>
                               : elements_[0]      ? nullptr
                                                   : thrown<std::runtime_error>;
        requireOutcome(wanted, outcomeOf([&] { require(toUTF16(array) == elements_[0], "another text"); }));
    }

    std::vector<String> elements_;
};

} // namespace

Slot makeStrings(World& world) {
    const Dims dims = world.input.dims(30);
    std::vector<String> elements(elementCount(dims));
    if (world.input.flip()) {
        return {world.factory.createArray<String>(dims), plain<Strings>(normalized(dims), elements)};
    }
    for (std::size_t k = 0; k < elements.size() && k < 6; ++k) {
        elements[k] = world.input.text();
    }
    Array array = world.factory.createArray<String>(dims, elements.begin(), elements.end());
    return {std::move(array), plain<Strings>(normalized(dims), std::move(elements))};
}

} // namespace vexa::fuzz
