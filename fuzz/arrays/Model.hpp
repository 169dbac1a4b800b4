// What an array should hold, in plain containers, and what may happen to both.
#pragma once

#include "Check.hpp"
#include "Input.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <memory>
#include <utility>

namespace vexa::fuzz {

using namespace foundation::vexadata;

class World;

/// Where indices lead: to a position in storage, or to an error.
struct Place {
    Outcome error = nullptr;
    std::size_t position = 0;
};
Place resolve(const Dims& dims, bool rowMajor, const Indices& indices);

/// Arrays that hold an element which differs from itself, a NaN or a missing string, are equal only as the
/// same object, which a model cannot know.
enum class Likeness { equal, doubtful, different };

/// One kind of array. Copies are deep; nothing is shared with anything.
class Model {
public:
    Model(ArrayType type, Dims dims) : type_(type), dims_(std::move(dims)) {}
    virtual ~Model() = default;
    Model& operator=(const Model&) = delete;

    virtual std::unique_ptr<Model> clone() const = 0;
    /// One operation on the array and on this.
    virtual void act(World& world, Array& array) = 0;
    /// One write into the array that a cell, a field or a property holds.
    virtual void writeThrough(World& world, Reference<Array> held) = 0;

    /// What `cells[i].held()[j][k] = value` does with an array in cell i.
    virtual Outcome writeScalar(const Indices& indices, double value);

    /// Ends the process unless the array reads back as this.
    void check(const Array& array) const;
    Likeness compare(const Model& other) const;
    /// The number of models in this one.
    virtual std::size_t weight() const { return 1; }

    const Dims& dims() const { return dims_; }
    ArrayType type() const { return type_; }

protected:
    Model(const Model&) = default;

    virtual void checkElements(const Array& array) const = 0;
    virtual Likeness compareElements(const Model& other) const = 0;
    virtual bool rowMajor() const { return false; }

    bool isEmpty() const { return elementCount(dims_) == 0; }
    Place place(const Indices& indices) const { return resolve(dims_, rowMajor(), indices); }

    ArrayType type_;
    Dims dims_;
};

/// A model as a value.
class Plain {
public:
    explicit Plain(std::unique_ptr<Model> model) : model_(std::move(model)) {}
    Plain(const Plain& other) : model_(other->clone()) {}
    Plain(Plain&&) noexcept = default;
    Plain& operator=(Plain other) noexcept {
        model_.swap(other.model_);
        return *this;
    }
    ~Plain() = default;

    Model* operator->() const { return model_.get(); }
    Model& operator*() const { return *model_; }

private:
    std::unique_ptr<Model> model_;
};

template <class M, class... Arguments>
Plain plain(Arguments&&... arguments) {
    return Plain(std::make_unique<M>(std::forward<Arguments>(arguments)...));
}

/// The array that nobody has set: of unknown type, without elements.
Plain emptyModel();

/// An array beside its model.
struct Slot {
    Array array;
    Plain model;
};

/// Compares element by element with `likeness(a, b)`.
template <class Range, class F>
Likeness compareAll(const Range& a, const Range& b, F likeness) {
    Likeness worst = Likeness::equal;
    for (std::size_t k = 0; k < a.size(); ++k) {
        worst = std::max(worst, likeness(a[k], b[k]));
    }
    return worst;
}

/// Applies `use` to the element handle that the remaining indices lead to. Temporary handles grow in place
/// and named ones give longer ones; both come about.
template <class Ref, class F>
void descend(Ref ref, const std::size_t* next, const std::size_t* end, F use) {
    if (next == end) {
        use(ref);
    } else if ((end - next) % 2 != 0) {
        descend(std::move(ref)[*next], next + 1, end, use);
    } else {
        descend(std::as_const(ref)[*next], next + 1, end, use);
    }
}
template <class Handle, class F>
void atIndices(Handle& handle, const Indices& indices, F use) {
    descend(handle[indices[0]], indices.data() + 1, indices.data() + indices.size(), use);
}

/// The array through a typed handle that does not share it with the untyped one meanwhile. It comes back also
/// when `use` throws.
template <class Handle, class F>
void as(Array& array, F use) {
    struct Typed {
        explicit Typed(Array& from) : home(from), handle(std::move(from)) {}
        ~Typed() { home = std::move(handle); }
        Array& home;
        Handle handle;
    };
    Typed typed(array);
    use(typed.handle);
}

} // namespace vexa::fuzz
