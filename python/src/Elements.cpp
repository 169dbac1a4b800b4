#include "Elements.hpp"

#include "Errors.hpp"
#include "Module.hpp"
#include "Numbers.hpp"
#include "Objects.hpp"
#include "Text.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

namespace vexa::python {

namespace {

/// An element that is read and written through iterators.
template <class T>
auto elementOf(const fv::TypedArray<T>& array, std::size_t position) {
    auto element = array.cbegin();
    element += static_cast<std::ptrdiff_t>(position);
    return element;
}

/// What lay in the element before goes last: freeing it may run code of Python, which may look at the array.
template <class T>
void store(ArrayObject& self, std::size_t position, const T& value) {
    const T before = *elementOf(fv::TypedArray<T>(self.array), position);
    write<fv::TypedArray<T>>(self, [&](fv::TypedArray<T>& array) {
        auto element = array.begin();
        element += static_cast<std::ptrdiff_t>(position);
        *element = value;
    });
}

char16_t toUnit(py::handle value) {
    const std::u16string text = toUtf16(value, "a character");
    if (text.size() != 1) {
        raise(PyExc_ValueError,
              "an element holds one unit of UTF-16, and the text has " + std::to_string(text.size()));
    }
    return text.front();
}

/// None, a name, or a member of an `enum`.
fv::Enumeration toMember(py::handle value) {
    if (value.is_none()) {
        return {};
    }
    if (!PyUnicode_Check(value.ptr())) {
        const py::object name = py::getattr(value, "name", py::none());
        if (!PyUnicode_Check(name.ptr())) {
            raise(PyExc_TypeError, "a member is str, a member of an enum or None, not " + typeName(value));
        }
        return fv::Enumeration(toName(name));
    }
    return fv::Enumeration(toName(value));
}

py::object fromMember(const fv::Enumeration& member) {
    return member.getName().empty() ? py::object(py::none()) : py::str(member.getName());
}

template <class T>
py::object readTyped(py::handle self, const fv::Array& array, std::size_t position) {
    if constexpr (std::is_same_v<T, char16_t>) {
        return fromUtf16({static_cast<const char16_t*>(dataOf(array)) + position, 1});
    } else if constexpr (fv::detail::isPrimitiveElement<T>) {
        return fromNumber(static_cast<const T*>(dataOf(array))[position]);
    } else if constexpr (std::is_same_v<T, fv::StructElement>) {
        return pythonFunction("Record")(self, position);
    } else {
        const fv::TypedArray<T> typed = array;
        const auto element = elementOf(typed, position);
        if constexpr (std::is_same_v<T, fv::String>) {
            return fromString((*element).value());
        } else if constexpr (std::is_same_v<T, fv::Enumeration>) {
            return fromMember(*element);
        } else if constexpr (std::is_same_v<T, fv::Array>) {
            return wrap(fv::Array(*element));
        } else if constexpr (std::is_same_v<T, fv::ValueObject>) {
            return fromObject(static_cast<fv::ValueObject>(*element));
        } else {
            return fromHandle(static_cast<fv::HandleObjectRef>(*element));
        }
    }
}

template <class T>
void writeTyped(ArrayObject& self, std::size_t position, py::handle value) {
    if constexpr (std::is_same_v<T, char16_t>) {
        const char16_t unit = toUnit(value);
        static_cast<char16_t*>(writableDataOf(self))[position] = unit;
    } else if constexpr (fv::detail::isPrimitiveElement<T>) {
        const T number = toNumber<T>(value);
        static_cast<T*>(writableDataOf(self))[position] = number;
    } else if constexpr (std::is_same_v<T, fv::String>) {
        store<T>(self, position, toString(value));
    } else if constexpr (std::is_same_v<T, fv::Enumeration>) {
        store<T>(self, position, toMember(value));
    } else if constexpr (std::is_same_v<T, fv::Array>) {
        store<T>(self, position, toArray(value));
    } else if constexpr (std::is_same_v<T, fv::ValueObject>) {
        store<T>(self, position, toObject(value));
    } else if constexpr (std::is_same_v<T, fv::HandleObjectRef>) {
        store<T>(self, position, toHandle(value));
    } else {
        raise(PyExc_TypeError, "a record is written field by field: a[i]['name'] = value");
    }
}

} // namespace

py::object readElement(py::handle self, const fv::Array& array, std::size_t position) {
    return fv::detail::withKind(array.getType(), [&](auto tag) -> py::object {
        if constexpr (std::is_same_v<decltype(tag), fv::detail::NoElementTag> || tag.isSparse) {
            raise(PyExc_TypeError, describe(array) + " has no elements to read in this way");
        } else {
            return readTyped<typename decltype(tag)::type>(self, array, position);
        }
    });
}

void writeElement(ArrayObject& self, std::size_t position, py::handle value) {
    fv::detail::withKind(self.array.getType(), [&](auto tag) {
        if constexpr (std::is_same_v<decltype(tag), fv::detail::NoElementTag> || tag.isSparse) {
            raise(PyExc_TypeError, "elements of " + describe(self.array) + " are not written one by one");
        } else {
            writeTyped<typename decltype(tag)::type>(self, position, value);
        }
    });
}

} // namespace vexa::python
