// The embedded back-end's library: the types of the functions that it exports, and what lies in clients'
// objects.
#include "Table.hpp"

#include <vexa/client/Adoption.hpp>
#include <vexa/client/Client.hpp>
#include <vexa/client/Objects.hpp>
#include <vexa/client/Workspace.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace contract {

using namespace foundation::vexadata;
using namespace vexa::client;

template struct Function<bool (*)(), &registerBackEnd>;
template struct Function<std::size_t (*)(const ZVMID&, long), &countOfReferences>;
template struct Function<void (*)(ValueObjectArray&, std::vector<std::size_t>), &setExternalDimensions>;
template struct Function<Array (*)(std::vector<std::size_t>, ArrayType, void*, std::shared_ptr<void>,
                                   vexa::data::MemoryLayout),
                         &adopt>;
template struct Function<Array (*)(std::vector<std::size_t>, ArrayType, const void*,
                                   std::shared_ptr<const void>, vexa::data::MemoryLayout),
                         &adoptReadOnly>;
template struct Function<std::shared_ptr<void> (*)(const Array&), &vexa::client::detail::ownerOf>;
template struct Function<void (*)(const std::vector<std::size_t>&, std::size_t),
                         &vexa::client::detail::requireCount>;
template struct Function<InProcessCustomWorkspace (WorkspaceEngine::*)(), &WorkspaceEngine::workspace>;

template struct Values<8, 8, 8, Passed::inMemory, WorkspaceEngine>;
template struct Member<0, std::unique_ptr<Variables>, &WorkspaceEngine::variables_>;
template struct Member<8, std::shared_ptr<const std::string>, &NamedException::message_>;
template struct Derived<NamedException, Exception, 24>;
template struct Derived<UnknownFieldException, NamedException, 24>;
template struct Derived<InvalidBufferException, Exception, 8>;

} // namespace contract
