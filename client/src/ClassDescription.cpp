// Building a class from lists of properties and superclasses, and finding properties in it.
#include "ClassDescription.hpp"

#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/data/detail/PositionIterator.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace vexa::client {

using data::detail::ForwardIteratorImpl;
using data::detail::RefCounted;
using data::impl::VexaClassIdentifierImpl;
using foundation::vexadata::detail::Access;

namespace {

const std::string& propertyName(const VexaPropertyIdentifier& id) { return Access::impl(id)->propertyName(); }
const std::string& qualifier(const VexaPropertyIdentifier& id) { return Access::impl(id)->className(); }

std::vector<std::string> propertyNames(const std::vector<VexaPropertyIdentifier>& ids) {
    std::vector<std::string> names;
    std::transform(ids.begin(), ids.end(), std::back_inserter(names), propertyName);
    return names;
}

std::shared_ptr<const ClassDescription> counted(const ClassDescription& description) {
    description.retain();
    return Access::createSharedPtr(&description);
}

/// What an iterator stands at, with the reference for its caller.
RefCounted* given(RefCounted* object) {
    object->retain();
    return object;
}

ForwardIteratorImpl* identifiersAt(const ClassDescription& owner, const PropertyList& list,
                                   std::size_t position) {
    const auto element = [keep = counted(owner), &list](std::size_t place) {
        return given(Access::impl(list[place]).get());
    };
    return data::detail::iteratorAt(element, position);
}

/// Identifiers in the order in which they came first.
class DistinctIdentifiers {
public:
    /// False for one that is there already. The key is "class.name", which is unambiguous because property
    /// names have no dots.
    bool add(const std::string& className, const std::string& name) {
        if (!known_.insert(className + '.' + name).second) {
            return false;
        }
        ids_.emplace_back(className, name);
        return true;
    }
    std::vector<VexaPropertyIdentifier> take() { return std::move(ids_); }

private:
    std::vector<VexaPropertyIdentifier> ids_;
    std::unordered_set<std::string> known_;
};

/// The class's own properties, as new identifiers with plain names: the caller's identifiers are not linked
/// to the class.
DistinctIdentifiers ownProperties(const std::string& className,
                                  const std::vector<VexaPropertyIdentifier>& given) {
    DistinctIdentifiers own;
    for (const VexaPropertyIdentifier& id : given) {
        const std::string name = id.getPropertyName(); // empty for an identifier that was moved from
        if (!isIdentifier(name)) {
            throw InvalidPropertyException(name, className, "is no identifier");
        }
        if (!qualifier(id).empty() && qualifier(id) != className) {
            throw InvalidPropertyException(name, className, "belongs to the class '" + qualifier(id) + "'");
        }
        if (!own.add(std::string(), name)) {
            throw InvalidPropertyException(name, className, "comes twice");
        }
    }
    return own;
}

/// Adds the properties of a superclass that have not come through another superclass already.
void inherit(DistinctIdentifiers& ids, const PropertyList& inherited, const std::string& superclass) {
    for (std::size_t k = 0; k < inherited.size(); ++k) {
        const std::string& defining = qualifier(inherited[k]);
        ids.add(defining.empty() ? superclass : defining, propertyName(inherited[k]));
    }
}

} // namespace

PropertyList::PropertyList(std::vector<VexaPropertyIdentifier> ids)
    : ids_(std::move(ids)),
      names_(propertyNames(ids_)),
      hasNamesakes_(
          std::any_of(ids_.begin(), ids_.end(), [this](const auto& id) { return isAmbiguous(id); })) {}

std::size_t PropertyList::findAmongNamesakes(const VexaPropertyIdentifier& id,
                                             const std::string& className) const {
    if (Access::impl(id) == nullptr) {
        return NameTable::none;
    }
    const std::string& name = propertyName(id);
    const bool plain = qualifier(id).empty();
    if (plain && (!hasNamesakes_ || !isAmbiguous(id))) {
        return names_.find(name);
    }
    const auto definedBy = [&](const std::string& wanted) {
        return names_.find(name, [&](std::size_t place) {
            const std::string& defining = qualifier(ids_[place]);
            return defining == wanted || (defining.empty() && wanted == className);
        });
    };
    if (!plain) {
        return definedBy(qualifier(id));
    }
    // Links are read only when needed, since another thread may set them at the same time (docs/threads.md).
    const std::size_t itself =
        names_.find(name, [&](std::size_t place) { return Access::impl(ids_[place]) == Access::impl(id); });
    if (itself != NameTable::none) {
        return itself;
    }
    const std::string linked = id.getClassName();
    const std::size_t ofSuperclass = linked.empty() ? NameTable::none : definedBy(linked);
    return ofSuperclass != NameTable::none ? ofSuperclass : definedBy({});
}

bool PropertyList::isAmbiguous(const VexaPropertyIdentifier& id) const {
    std::size_t matches = 0;
    names_.find(propertyName(id), [&](std::size_t) { return ++matches > 1; });
    return matches > 1;
}

std::vector<std::string> PropertyList::externalNames() const {
    std::vector<std::string> names;
    for (const VexaPropertyIdentifier& id : ids_) {
        names.push_back(id.getExternalPropertyName());
    }
    return names;
}

void reportUnknown(const PropertyList& list, const VexaPropertyIdentifier& id, const std::string& className) {
    if (Access::impl(id) != nullptr && qualifier(id).empty() && list.isAmbiguous(id)) {
        throw AmbiguousPropertyException(id.getPropertyName(), className);
    }
    throw UnknownPropertyException(id.getExternalPropertyName(), className);
}

ClassDescription::ClassDescription(std::string name, const std::vector<VexaPropertyIdentifier>& properties,
                                   const std::vector<VexaPropertyIdentifier>& arrayProperties,
                                   const std::vector<ClassInfo>& superclasses)
    : name_(Access::createSharedPtr(new VexaClassIdentifierImpl(std::move(name)))) {
    requireClassName(this->name());
    DistinctIdentifiers all = ownProperties(this->name(), properties);
    DistinctIdentifiers allOfArrays = ownProperties(this->name(), arrayProperties);
    for (const ClassInfo& superclass : superclasses) {
        const auto* above =
            foundation::vexadata::detail::dynamicCast<const ClassDescription>(Access::impl(superclass).get());
        if (above == nullptr) {
            throw ForeignClassException(Access::impl(superclass) == nullptr
                                            ? std::string()
                                            : superclass.getClassIdentifier().getString());
        }
        if (above->isOrHas(this->name())) {
            throw InvalidSuperclassException(above->name(), this->name());
        }
        inherit(all, above->properties(), above->name());
        inherit(allOfArrays, above->arrayProperties(), above->name());
        superclasses_.push_back(counted(*above));
    }
    properties_ = PropertyList(all.take());
    arrayProperties_ = PropertyList(allOfArrays.take());
}
ClassDescription::~ClassDescription() = default;

const std::string& ClassDescription::name() const noexcept { return name_->name(); }
std::shared_ptr<VexaClassIdentifierImpl> ClassDescription::getClassIdentifier() const { return name_; }
ForwardIteratorImpl* ClassDescription::beginProperties() const {
    return identifiersAt(*this, properties_, 0);
}
ForwardIteratorImpl* ClassDescription::endProperties() const {
    return identifiersAt(*this, properties_, properties_.size());
}
ForwardIteratorImpl* ClassDescription::beginArrayProperties() const {
    return identifiersAt(*this, arrayProperties_, 0);
}
ForwardIteratorImpl* ClassDescription::endArrayProperties() const {
    return identifiersAt(*this, arrayProperties_, arrayProperties_.size());
}

namespace {

ForwardIteratorImpl* superclassesAt(const ClassDescription& owner,
                                    const std::vector<std::shared_ptr<const ClassDescription>>& superclasses,
                                    std::size_t position) {
    const auto element = [keep = counted(owner), &superclasses](std::size_t place) {
        return given(const_cast<ClassDescription*>(superclasses[place].get()));
    };
    return data::detail::iteratorAt(element, position);
}

} // namespace

ForwardIteratorImpl* ClassDescription::beginSuperclasses() const {
    return superclassesAt(*this, superclasses_, 0);
}
ForwardIteratorImpl* ClassDescription::endSuperclasses() const {
    return superclassesAt(*this, superclasses_, superclasses_.size());
}
std::size_t ClassDescription::getNumberOfProperties() const { return properties_.size(); }
std::size_t ClassDescription::getNumberOfArrayProperties() const { return arrayProperties_.size(); }

void ClassDescription::updateVexaPropertyIdentifiersClassInfo(ClassInfo& classInfo) {
    for (PropertyList* list : {&properties_, &arrayProperties_}) {
        for (std::size_t k = 0; k < list->size(); ++k) {
            (*list)[k].updateClassInfo(classInfo);
        }
    }
}

/// Visits each class once, even when several superclasses lead to it.
bool ClassDescription::isOrHas(const std::string& className) const {
    std::vector<const ClassDescription*> open{this};
    std::unordered_set<const ClassDescription*> seen{this};
    while (!open.empty()) {
        const ClassDescription& current = *open.back();
        open.pop_back();
        if (current.name() == className) {
            return true;
        }
        for (const auto& superclass : current.superclasses_) {
            if (seen.insert(superclass.get()).second) {
                open.push_back(superclass.get());
            }
        }
    }
    return false;
}

bool ClassDescription::equals(const ClassDescription& other) const {
    return this == &other || (name() == other.name() && properties_.equals(other.properties_) &&
                              arrayProperties_.equals(other.arrayProperties_));
}

} // namespace vexa::client
