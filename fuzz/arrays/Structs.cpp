// Struct arrays.
#include "World.hpp"

#include <vexa/client/Exception.hpp>

#include <algorithm>
#include <numeric>
#include <string>

namespace vexa::fuzz {

namespace {

class Structs final : public Model {
public:
    Structs(Dims dims, std::vector<std::string> names)
        : Model(ArrayType::STRUCT, std::move(dims)),
          names_(std::move(names)),
          records_(elementCount(dims_), Record(names_.size(), emptyModel())) {}

    std::unique_ptr<Model> clone() const override { return std::make_unique<Structs>(*this); }

    void act(World& world, Array& array) override {
        switch (world.input.below(6)) {
        case 0:
            operation = "struct: store a field";
            return as<StructArray>(array, [&](StructArray& typed) { storeField(world, typed); });
        case 1:
            operation = "struct: store a field through an untyped handle";
            return storeField(world, array);
        case 2:
            return storeRecord(world, array);
        case 3:
            return copyRecord(world.input, array);
        case 4:
            return readField(world.input, array);
        default:
            return writeInside(world, array);
        }
    }

    void writeThrough(World& world, Reference<Array> held) override {
        operation = "struct inside: store a field";
        Reference<StructArray> typed(held);
        if (hasNoFields() || world.input.flip()) {
            return storeField(world, typed);
        }
        writeHeld(world, typed);
    }

    std::size_t weight() const override {
        std::size_t sum = 1;
        for (const Record& record : records_) {
            sum = std::accumulate(record.begin(), record.end(), sum + 1,
                                  [](std::size_t s, const Plain& value) { return s + value->weight(); });
        }
        return sum;
    }

protected:
    void checkElements(const Array& array) const override {
        const StructArray typed = array;
        require(typed.getNumberOfFields() == names_.size(), "another number of fields");
        std::size_t n = 0;
        for (const VexaFieldIdentifier& name : typed.getFieldNames()) {
            require(n < names_.size() && name.getString() == names_[n], "another field name");
            ++n;
        }
        std::size_t k = 0;
        for (const auto& record : typed) {
            require(k < records_.size(), "the walk is long");
            checkRecord(record, records_[k++]);
        }
        require(k == records_.size(), "the walk is short");
    }
    Likeness compareElements(const Model& other) const override {
        const auto& right = static_cast<const Structs&>(other);
        return names_ != right.names_
                   ? Likeness::different
                   : compareAll(records_, right.records_, [](const Record& a, const Record& b) {
                         return compareAll(a, b,
                                           [](const Plain& x, const Plain& y) { return x->compare(*y); });
                     });
    }

private:
    using Record = std::vector<Plain>;

    bool hasNoFields() const { return isEmpty() || names_.empty(); }

    template <class Ref>
    void checkRecord(const Ref& record, const Record& wanted) const {
        std::size_t n = 0;
        for (const auto& value : record) {
            require(n < wanted.size(), "the walk over a record is long");
            wanted[n++]->check(Array(value));
        }
        require(n == wanted.size(), "the walk over a record is short");
        for (n = 0; n < names_.size(); ++n) {
            wanted[n]->check(record[names_[n]]);
        }
    }

    std::size_t fieldOf(const std::string& name) const {
        return static_cast<std::size_t>(std::find(names_.begin(), names_.end(), name) - names_.begin());
    }
    Outcome fieldError(const std::string& name) const {
        return fieldOf(name) == names_.size() ? thrown<client::UnknownFieldException> : nullptr;
    }
    std::string anyField(Input& input) const {
        return names_.empty() || input.below(8) == 0 ? "nobody" : names_[input.below(names_.size())];
    }

    template <class Handle>
    void storeField(World& world, Handle& typed) {
        const Slot other = world.pick();
        const std::string name = anyField(world.input);
        const Indices indices = world.input.indices(dims_);
        const Place at = place(indices);
        const Outcome wanted = at.error != nullptr ? at.error : fieldError(name);
        if (succeeds(wanted,
                     [&] { atIndices(typed, indices, [&](auto& ref) { ref[name] = other.array; }); })) {
            records_[at.position][fieldOf(name)] = other.model;
        }
    }

    void storeRecord(World& world, Array& array) {
        operation = "struct: replace a record";
        std::vector<Array> values;
        Record models;
        const std::size_t count = names_.size() + world.input.below(8) / 7;
        for (std::size_t k = 0; k < count; ++k) {
            const Slot other = world.pick();
            values.push_back(other.array);
            models.push_back(other.model);
        }
        const Indices indices = world.input.indices(dims_);
        const Place at = place(indices);
        const Outcome wrongSize =
            count == names_.size() ? nullptr : thrown<WrongVectorSizeForStructException>;
        if (at.error != nullptr && wrongSize != nullptr) {
            return; // which one comes first is not at stake here
        }
        const Outcome wanted = at.error != nullptr ? at.error : wrongSize;
        as<StructArray>(array, [&](StructArray& typed) {
            if (succeeds(wanted, [&] { atIndices(typed, indices, [&](auto& ref) { ref = values; }); })) {
                records_[at.position] = std::move(models);
            }
        });
    }

    void copyRecord(Input& input, Array& array) {
        operation = "struct: assign one record to another";
        if (isEmpty()) {
            return;
        }
        const Indices from = input.validIndices(dims_);
        const Indices to = input.validIndices(dims_);
        as<StructArray>(array, [&](StructArray& typed) {
            atIndices(typed, to,
                      [&](auto& target) { atIndices(typed, from, [&](auto& source) { target = source; }); });
        });
        records_[place(to).position] = Record(records_[place(from).position]);
    }

    void readField(Input& input, const Array& array) const {
        operation = "struct: read a field";
        const StructArray typed = array;
        const std::string name = anyField(input);
        const Indices indices = input.indices(dims_);
        const Place at = place(indices);
        const Outcome wanted = at.error != nullptr ? at.error : fieldError(name);
        const auto compare = [&](auto& ref) {
            const Array found = ref[name];
            records_[at.position][fieldOf(name)]->check(found);
        };
        requireOutcome(wanted, outcomeOf([&] { atIndices(typed, indices, compare); }));
        requireOutcome(wanted, outcomeOf([&] { atIndices(array, indices, compare); }));
    }

    template <class Handle>
    void writeHeld(World& world, Handle& typed) {
        const std::size_t field = world.input.below(names_.size());
        const Indices indices = world.input.validIndices(dims_);
        atIndices(typed, indices, [&](auto& ref) {
            records_[place(indices).position][field]->writeThrough(world,
                                                                   Reference<Array>(ref[names_[field]]));
        });
    }
    void writeInside(World& world, Array& array) {
        if (hasNoFields()) {
            return;
        }
        if (world.input.flip()) {
            writeHeld(world, array);
        } else {
            as<StructArray>(array, [&](StructArray& typed) { writeHeld(world, typed); });
        }
    }

    std::vector<std::string> names_;
    std::vector<Record> records_;
};

} // namespace

Slot makeStructs(World& world) {
    operation = "make a struct array";
    Input& input = world.input;
    const Dims dims = input.dims(6);
    std::vector<std::string> names(input.below(4));
    bool valid = true;
    for (std::size_t k = 0; k < names.size(); ++k) {
        names[k] = input.below(16) == 0 ? input.name() : std::string(1, static_cast<char>('a' + k));
        const bool identifier = !names[k].empty() && names[k].find(' ') == std::string::npos;
        const auto here = names.begin() + static_cast<std::ptrdiff_t>(k);
        valid = valid && identifier && std::find(names.begin(), here, names[k]) == here;
    }
    Slot made{Array(), emptyModel()};
    if (succeeds(valid ? nullptr : thrown<client::InvalidFieldNameException>,
                 [&] { made.array = world.factory.createStructArray(dims, names); })) {
        made.model = plain<Structs>(normalized(dims), names);
    }
    return made;
}

} // namespace vexa::fuzz
