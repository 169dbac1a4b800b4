#include "World.hpp"

namespace failure {

namespace {

const std::u16string longText(20, u'x');

} // namespace

TypedArray<double>& World::numbers() {
    return pair(numbers_, [](ArrayFactory& f) { return f.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6}); });
}

TypedArray<double>& World::alone() {
    if (!alone_) {
        alone_ = factory.createArray<double>({1, 2}, {1, 2});
    }
    return *alone_;
}

CharArray& World::characters() {
    return pair(characters_, [](ArrayFactory& f) { return f.createCharArray("text"); });
}

TypedArray<String>& World::strings() {
    return pair(strings_, [](ArrayFactory& f) {
        auto made = f.createArray<String>({1, 2});
        made[0] = longText;
        return made;
    });
}

EnumArray& World::members() {
    return pair(members_, [](ArrayFactory& f) {
        return f.createEnumArray({1, 2}, "SkyOverAVeryLargeCityByTheSea", {"sun", "rain"});
    });
}

TypedArray<Array>& World::cells() {
    return pair(cells_, [this](ArrayFactory& f) {
        auto made = f.createArray<Array>({1, 2});
        made[0] = numbers();
        auto inside = f.createArray<Array>({1, 1});
        inside[0] = numbers();
        made[1] = inside;
        return made;
    });
}

StructArray& World::records() {
    return pair(records_, [this](ArrayFactory& f) {
        auto made = f.createStructArray({1, 2}, {"size", "inner"});
        auto inner = f.createStructArray({1, 1}, {"deep"});
        inner[0]["deep"] = numbers();
        made[0]["inner"] = inner;
        made[1]["size"] = numbers();
        return made;
    });
}

SparseArray<double>& World::sparse() {
    return pair(sparse_, [](ArrayFactory& f) {
        auto values = f.createBuffer<double>(2);
        auto rows = f.createBuffer<std::size_t>(2);
        auto columns = f.createBuffer<std::size_t>(2);
        for (std::size_t k = 0; k < 2; ++k) {
            values[k] = 1.5;
            rows[k] = columns[k] = k;
        }
        return f.createSparseArray<double>({2, 2}, 2, std::move(values), std::move(rows), std::move(columns));
    });
}

ClassInfo& World::point() {
    if (!point_) {
        point_ = factory.createClassInfo("Point", {"x", "y"}, {"unit"});
    }
    return *point_;
}

ValueObject& World::object() {
    return pair(object_, [this](ArrayFactory& f) {
        auto made = f.createValueObject(point());
        made["x"] = numbers();
        return made;
    });
}

ValueObjectArray& World::objects() {
    return pair(objects_, [this](ArrayFactory& f) {
        auto made = f.createValueObjectArray({1, 2}, point());
        made[0] = object();
        return made;
    });
}

TypedArray<HandleObjectRef>& World::handles() {
    return pair(handles_, [](ArrayFactory& f) {
        auto made = f.createArray<HandleObjectRef>({1, 2});
        made[0] = f.createHandleObjectRef(ZVMID(), 7);
        return made;
    });
}

vexa::client::WorkspaceEngine& World::engine() {
    if (!engine_) {
        const Array held = numbers();
        engine_.emplace();
        try {
            engine_->workspace().setVariables({"a"}, {held});
        } catch (...) {
            engine_.reset(); // or else it would stay without its variable
            throw;
        }
    }
    return *engine_;
}

World& World::made() {
    numbers(), alone(), characters(), strings(), members(), cells(), records();
    sparse(), point(), object(), objects(), handles(), engine();
    return *this;
}

std::string World::text() {
    made();
    std::vector<Array> all{*alone_};
    const auto addBoth = [&](const auto& both) { all.insert(all.end(), {both->first, both->second}); };
    addBoth(numbers_), addBoth(characters_), addBoth(strings_), addBoth(members_), addBoth(cells_);
    addBoth(records_), addBoth(sparse_), addBoth(objects_), addBoth(handles_);
    auto workspace = engine_->workspace();
    std::string text;
    for (const std::string& name : workspace.getVariableNames()) {
        text += name + '\n';
        all.push_back(workspace.getVariable(name.c_str()));
    }
    for (const ValueObject* each : {&object_->first, &object_->second}) {
        for (auto property = each->cbegin(); property != each->cend(); ++property) {
            all.push_back((*property).castToArray());
        }
    }
    for (const Array& array : all) {
        text += toText(array) + '\n';
    }
    return text;
}

} // namespace failure
