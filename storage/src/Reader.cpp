#include "ArrayReader.hpp"
#include "Listing.hpp"

#include <vexa/storage/Reader.hpp>

#include <unordered_map>
#include <utility>

namespace vexa::storage {

struct Reader::State {
    explicit State(Source bytes);

    /// Where a variable is described.
    struct Place {
        const Segment* segment;
        const Entry* entry;

        std::size_t begin() const noexcept { return segment->begin + entry->offset; }
    };
    Place placeOf(std::string_view name) const;
    fv::Array load(const Place& place, const LoadOptions& options) const;

    Source source;
    std::vector<Segment> segments;
    std::vector<VariableDescription> variables;
    std::vector<Place> places; // of the variables
    std::unordered_map<std::string_view, std::size_t> byName;
};

Reader::State::State(Source bytes) : source(std::move(bytes)), segments(readSegments(source)) {
    for (const Segment& segment : segments) {
        for (const Entry& entry : segment.entries) {
            places.push_back({&segment, &entry});
            variables.push_back(
                {entry.name, entry.type, entry.dimensions, segment.begin + entry.offset, entry.size});
            if (!byName.emplace(entry.name, places.size() - 1).second) {
                throw Error(source.name(), places.back().begin(),
                            "expected a new name, found the variable '" + entry.name + "' once more");
            }
        }
    }
}

Reader::State::Place Reader::State::placeOf(std::string_view name) const {
    const auto found = byName.find(name);
    if (found == byName.end()) {
        throw Error(source.name(), Error::nowhere, "has no variable '" + std::string(name) + "'");
    }
    return places[found->second];
}

namespace {

/// What the back-end says to a file.
[[noreturn]] void rethrow(const Source& source, std::size_t offset, const fv::Exception& error) {
    if (const auto* own = dynamic_cast<const Error*>(&error)) {
        throw Error(*own);
    }
    throw Error(source.name(), offset, std::string("expected what arrays can hold: ") + error.what());
}

/// Reads the array in a part of the bytes.
fv::Array readArray(const Source& source, std::size_t begin, std::size_t size, Payloads& payloads,
                    std::uint64_t firstShared) {
    Lexer lexer(source.name(), source.data() + begin, size, begin);
    try {
        fv::Array array = ArrayReader(lexer, payloads, firstShared).read();
        if (lexer.remaining() != 0) {
            lexer.failAt(lexer.position(), "expected the end of the value");
        }
        return array;
    } catch (const fv::Exception& error) {
        rethrow(source, begin + lexer.position(), error);
    }
}

/// That the variable is a reference to another one, as the list says.
void requireReference(const Source& source, std::size_t begin, std::size_t size, std::uint64_t number) {
    Lexer lexer(source.name(), source.data() + begin, size, begin);
    const Token tag = lexer.expect(Token::Kind::tag, "a reference");
    if (tag.value != tag::reference || lexer.expectUnsigned("the number of a shared value") != number ||
        lexer.remaining() != 0) {
        lexer.fail(tag, "the reference to another variable that the list has");
    }
}

void requireSameAsListed(const Source& source, std::size_t begin, const Entry& entry,
                         const fv::Array& array) {
    if (array.getType() != entry.type ||
        fv::detail::Access::impl(array)->getDimensions() != entry.dimensions) {
        throw Error(source.name(), begin,
                    "expected an array of the kind and size in the list, found another");
    }
}

} // namespace

fv::Array Reader::State::load(const Place& place, const LoadOptions& options) const {
    const Entry& entry = *place.entry;
    if (entry.same) {
        const Place first{place.segment, &place.segment->entries[*entry.same]};
        requireReference(source, place.begin(), entry.size, first.entry->firstShared);
        return load(first, options);
    }
    Payloads payloads(source, place.begin(), entry.size, options);
    fv::Array array = readArray(source, place.begin(), entry.size, payloads, entry.firstShared);
    requireSameAsListed(source, place.begin(), entry, array);
    payloads.finish(entry.checksum);
    return array;
}

Reader::Reader(const std::filesystem::path& path) : state_(std::make_shared<State>(Source(path))) {}
Reader::Reader(std::istream& stream) : state_(std::make_shared<State>(Source(stream))) {}
Reader::Reader(const void* data, std::size_t size, std::shared_ptr<const void> owner)
    : state_(std::make_shared<State>(Source(data, size, std::move(owner)))) {}
Reader::Reader(const Reader&) noexcept = default;
Reader::Reader(Reader&&) noexcept = default;
Reader& Reader::operator=(const Reader&) noexcept = default;
Reader& Reader::operator=(Reader&&) noexcept = default;
Reader::~Reader() = default;

const std::vector<VariableDescription>& Reader::variables() const noexcept { return state_->variables; }
bool Reader::has(std::string_view name) const noexcept { return state_->byName.count(name) != 0; }

fv::Array Reader::load(std::string_view name, const LoadOptions& options) const {
    return state_->load(state_->placeOf(name), options);
}

std::vector<Variable> Reader::loadAll(const LoadOptions& options) const {
    std::vector<Variable> all;
    for (const Segment& segment : state_->segments) {
        const std::size_t first = all.size();
        for (const Entry& entry : segment.entries) {
            const State::Place place{&segment, &entry};
            if (entry.same) {
                const Entry& original = segment.entries[*entry.same];
                requireReference(state_->source, place.begin(), entry.size, original.firstShared);
                all.push_back({entry.name, all[first + *entry.same].array});
            } else {
                all.push_back({entry.name, state_->load(place, options)});
            }
        }
    }
    return all;
}

void Reader::verify(std::string_view name) const {
    const State::Place place = state_->placeOf(name);
    const LoadOptions options{Placement::mapped, Check::always};
    Payloads(state_->source, place.begin(), place.entry->size, options).finish(place.entry->checksum);
    if (place.entry->same) {
        verify(place.segment->entries[*place.entry->same].name);
    }
}

fv::Array decode(const void* data, std::size_t size) {
    const Source source(data, size, nullptr);
    Payloads payloads(source, 0, size, {Placement::memory, Check::never});
    return readArray(source, 0, size, payloads, 0);
}

} // namespace vexa::storage
