#include "ArrayWriter.hpp"
#include "Listing.hpp"

#include <foundation/vexadata/Utf8.hpp>
#include <vexa/storage/Writer.hpp>

#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace vexa::storage {

struct Writer::State {
    explicit State(std::unique_ptr<Sink> target) : sink(std::move(target)), out(*sink) {
        out.write(opening.data(), opening.size());
    }

    std::unique_ptr<Sink> sink;
    Output out;
    std::vector<Entry> entries;
    std::unordered_set<std::string> names;
    std::uint64_t nextShared = 0;
    struct Known {
        std::size_t place;
        fv::Array array; // keeps the address from being used again
    };
    std::unordered_map<const void*, Known> known; // arrays that may come again
    bool isOpen = true;                           // false after an error, too
};

Writer::Writer(const std::filesystem::path& path) : state_(std::make_unique<State>(fileSink(path))) {}
Writer::Writer(std::ostream& stream) : state_(std::make_unique<State>(streamSink(stream))) {}
Writer::Writer(Writer&&) noexcept = default;
Writer& Writer::operator=(Writer&&) noexcept = default;
Writer::~Writer() = default;

namespace {

void requireName(const std::string& file, const std::string& name, bool isNew) {
    if (!isNew) {
        throw Error(file, Error::nowhere, "expected a new name, found '" + name + "' once more");
    }
    try {
        fv::fromUtf8(name);
    } catch (const std::range_error& error) {
        throw Error(file, Error::nowhere, std::string("cannot have the name of a variable: ") + error.what());
    }
}

/// The array itself; gives the number after its last shared value.
std::uint64_t putVariable(Output& out, const Entry& entry, const fv::Array& array) {
    ArrayWriter writer(out, "the variable '" + entry.name + "'", entry.firstShared);
    writer.write(array);
    return writer.nextShared();
}

} // namespace

void Writer::add(const std::string& name, const fv::Array& array) {
    State& state = *state_;
    if (!std::exchange(state.isOpen, false)) {
        throw Error(state.out.name(), Error::nowhere,
                    "cannot take another variable: it is finished, or failed before");
    }
    requireName(state.out.name(), name, state.names.insert(name).second);
    Output& out = state.out;
    putText(out, name);
    const std::vector<std::size_t>& dimensions =
        Access::impl(array)->getDimensions(); // the handle's must not fail
    Entry entry{name, array.getType(), dimensions, out.position(), 0, 0, state.nextShared, {}};
    out.beginChecksum();
    const auto known = state.known.find(Access::impl(array).get());
    if (known != state.known.end()) {
        entry.same = known->second.place;
        putTag(out, tag::reference);
        putUnsigned(out, state.entries[*entry.same].firstShared);
    } else {
        if (ownersOf(array) > 1 && entry.type != ArrayType::UNKNOWN) {
            state.known.emplace(Access::impl(array).get(), State::Known{state.entries.size(), array});
        }
        state.nextShared = putVariable(out, entry, array);
    }
    entry.size = out.position() - entry.offset;
    entry.checksum = out.checksum();
    state.entries.push_back(std::move(entry));
    state.isOpen = true;
}

void Writer::finish() {
    if (!std::exchange(state_->isOpen, false)) {
        throw Error(state_->out.name(), Error::nowhere,
                    "cannot be finished: it is already, or failed before");
    }
    putEnd(state_->out, state_->entries);
    state_->sink->finish();
}

} // namespace vexa::storage
