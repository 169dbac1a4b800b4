// Variables that are exchanged with a workspace, and the engine that the embedded back-end brings along.
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/client/Workspace.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using detail::DefaultVariableInfoImpl;
using support::throwsExactly;
using vexa::data::detail::ForwardIteratorImpl;
using vexa::data::detail::VariableInfoImplData;
using vexa::data::impl::ArrayImpl;

double number(const Array& scalar) { return TypedArray<double>(scalar)[0]; }

TEST(VariableLists, KeepTheirNamesInTwoForms) {
    ArrayFactory factory;
    const std::string first = "a";
    std::vector<const char*> pointers{first.c_str(), "bb", "ccc"};
    DefaultVariableInfoImpl list(pointers);
    EXPECT_EQ(list.getStatus(1), IVariableInfo::NOT_SET);
    EXPECT_TRUE(list.getValue(2).isEmpty());
    EXPECT_EQ(list.getName(0), first.c_str());
    list.ptr2Str();
    list.getPtrNames()[0] = "other";
    list.ptr2Str(); // in step already
    EXPECT_EQ(list.getNames(), (std::vector<std::string>{"a", "bb", "ccc"}));
    list.setValue(1, factory.createScalar(2.0));
    list.setStatus(1, IVariableInfo::SET_BY_ENGINE);

    DefaultVariableInfoImpl copy({"x", "y"}, list);
    EXPECT_EQ(number(copy.getValue(1)), 2);
    EXPECT_EQ(copy.getStatus(1), IVariableInfo::SET_BY_ENGINE);
    const DefaultVariableInfoImpl moved = std::move(copy);
    EXPECT_STREQ(moved.getName(1), "y");
    EXPECT_TRUE(DefaultVariableInfoImpl().str2Ptr().empty());
    std::vector<const char*> withNull{nullptr};
    DefaultVariableInfoImpl broken(withNull);
    EXPECT_TRUE(throwsExactly<std::logic_error>([&] { broken.ptr2Str(); },
                                                "basic_string::_M_construct null not valid"));
}

/// An engine that notes what it is asked, and does what a test wants.
struct ScriptedEngine {
    ArrayImpl* variable = nullptr;
    std::size_t visited = 0;
    bool beginIsEnd = false;
    bool throws = false;
    std::vector<const char*> names;
    void* token = nullptr;
    std::vector<void*> freed;
};
ScriptedEngine* engine = nullptr;
using Context = InProcessCustomWorkspace::Context;

void visit(Context, ForwardIteratorImpl* begin, ForwardIteratorImpl* end) {
    engine->beginIsEnd = begin->equal(end);
    EXPECT_EQ(begin->get(), end->get()) << "both hand the one record out";
    for (; !begin->equal(end); begin->increment()) {
        auto& record = static_cast<VariableInfoImplData&>(*begin->get());
        if (engine->variable != nullptr && engine->visited == 0) {
            engine->variable->retain();
            record.setValue(0, engine->variable);
        } else if (engine->visited == 1 && !engine->throws) {
            record.setValue(1, nullptr);
        }
        ++engine->visited;
        if (engine->throws) {
            throw std::runtime_error("engine");
        }
    }
}
InProcessCustomWorkspace scripted() {
    return InProcessCustomWorkspace(
        nullptr,
        [](Context, const char*) {
            if (engine->variable != nullptr) {
                engine->variable->retain();
            }
            return engine->variable;
        },
        &visit, &visit, [](Context, const char* name) { engine->names.push_back(name); },
        [](Context, std::size_t& count, void*& token) -> const char* const* {
            EXPECT_EQ(count, 0U);
            EXPECT_EQ(token, nullptr);
            count = engine->names.size();
            token = engine->token;
            return engine->names.data();
        },
        [](void* token) { engine->freed.push_back(token); });
}

class Callbacks : public testing::Test {
protected:
    void SetUp() override { engine = &script_; }
    ArrayFactory factory;
    ScriptedEngine script_;
};

TEST_F(Callbacks, GetReferencesAndRecordsOfTheirOwn) {
    const auto value = factory.createScalar(5.0);
    ArrayImpl* impl = detail::Access::impl(value).get();
    script_.variable = impl;
    InProcessCustomWorkspace workspace = scripted();
    {
        EXPECT_EQ(number(workspace.getVariable("x")), 5);
        std::vector<const char*> names{"a", "b", "c"};
        const VariableInfo info = workspace.getVariables(names);
        EXPECT_EQ(script_.visited, 3U);
        EXPECT_EQ(info.getStatus(0), IVariableInfo::SET_BY_ENGINE);
        EXPECT_EQ(info.getStatus(1), IVariableInfo::SET_BY_ENGINE);
        EXPECT_EQ(info.getStatus(2), IVariableInfo::NOT_SET);
        EXPECT_EQ(number(info.getValue(0)), 5);
        EXPECT_TRUE(info.getValue(1).isEmpty()) << "the engine has set it to null";
        EXPECT_TRUE(info.getValue(2).isEmpty());
        workspace.setVariables({"a", "b"}, {value}); // the second gets an empty array
        script_.throws = true;
        script_.visited = 0;
        EXPECT_TRUE(throwsExactly<std::runtime_error>([&] { workspace.getVariables(names); }, "engine"));
        EXPECT_TRUE(
            throwsExactly<std::runtime_error>([&] { workspace.setVariables({"a"}, {value}); }, "engine"));
    }
    EXPECT_EQ(impl->referenceCount(), 1U) << "a reference was kept or dropped";
    std::vector<const char*> none;
    script_.throws = false;
    workspace.getVariables(none);
    EXPECT_TRUE(script_.beginIsEnd);
    script_.variable = nullptr;
    EXPECT_TRUE(workspace.getVariable("x").isEmpty());
}

TEST_F(Callbacks, GetTheirTokenBack) {
    int mark = 0;
    script_.token = &mark;
    InProcessCustomWorkspace workspace = scripted();
    EXPECT_TRUE(workspace.getVariableNames().empty());
    EXPECT_EQ(script_.freed, std::vector<void*>{&mark}) << "even without names";
    workspace.clearVariable("gone");
    EXPECT_EQ(workspace.getVariableNames(), std::vector<std::string>{"gone"});
    EXPECT_EQ(script_.freed.size(), 2U);
}

class Engine : public testing::Test {
protected:
    ArrayFactory factory;
    vexa::client::WorkspaceEngine engine_;
    InProcessCustomWorkspace workspace = engine_.workspace();
};

TEST_F(Engine, SharesValuesUntilOneSideWrites) {
    TypedArray<double> a = factory.createArray<double>({1, 2}, {1, 2});
    workspace.setVariables({"b", "a"}, {factory.createCharArray("text"), a});
    const auto id = a.getArrayID();
    EXPECT_EQ(workspace.getVariable("a").getArrayID(), id) << "values are copied";
    a[0] = 10.0;
    TypedArray<double> out = workspace.getVariable("a");
    EXPECT_EQ(out[0], 1.0);
    out[1] = 20.0;
    EXPECT_EQ(TypedArray<double>(workspace.getVariable("a"))[1], 2.0);
    EXPECT_EQ(workspace.getVariableNames(), (std::vector<std::string>{"a", "b"}));
    std::vector<const char*> names{"a", "nothing", "b"};
    const VariableInfo info = engine_.workspace().getVariables(names);
    EXPECT_EQ(info.getStatus(0), IVariableInfo::SET_BY_ENGINE);
    EXPECT_EQ(info.getStatus(1), IVariableInfo::NOT_SET);
    EXPECT_EQ(CharArray(info.getValue(2)).toAscii(), "text");
    workspace.clearVariable("a");
    workspace.clearVariable("nothing");
    EXPECT_EQ(workspace.getVariableNames(), std::vector<std::string>{"b"});
    EXPECT_EQ(CharArray(info.getValue(2)).toAscii(), "text");
}

TEST_F(Engine, ChangesNothingWhenASetFails) {
    workspace.setVariables({"a"}, {factory.createScalar(1.0)});
    const auto message = "A variable cannot be called '1b'";
    EXPECT_TRUE(throwsExactly<vexa::client::InvalidVariableNameException>(
        [&] {
            workspace.setVariables({"a", "c", "1b"}, {factory.createScalar(2.0), Array(), Array()});
        },
        message));
    EXPECT_EQ(number(workspace.getVariable("a")), 1);
    EXPECT_EQ(workspace.getVariableNames(), std::vector<std::string>{"a"});
    for (const char* bad : {"", "1a", "a b", "a-b", "\xC3\xA9"}) {
        EXPECT_THROW(workspace.getVariable(bad), vexa::client::InvalidVariableNameException) << bad;
        EXPECT_THROW(workspace.clearVariable(bad), vexa::client::InvalidVariableNameException) << bad;
    }
    workspace.setVariables({"_1"}, {factory.createScalar(1.5)});
    EXPECT_EQ(number(workspace.getVariable("_1")), 1.5);
}

TEST_F(Engine, HoldsThousands) {
    std::vector<std::string> texts;
    std::vector<Array> values;
    for (int k = 0; k < 5000; ++k) {
        std::string name = std::to_string(k);
        name.insert(name.begin(), 'v');
        texts.push_back(name);
        values.push_back(factory.createScalar(double(k)));
    }
    DefaultVariableInfoImpl list(texts, std::vector<IVariableInfo::VariableStatus>(), {});
    workspace.setVariables(list.getPtrNames(), values);
    const VariableInfo info = workspace.getVariables(list.getPtrNames());
    for (std::size_t k = 0; k < 5000; ++k) {
        ASSERT_EQ(number(info.getValue(k)), double(k));
    }
    EXPECT_EQ(workspace.getVariableNames().size(), 5000U);
}

} // namespace
