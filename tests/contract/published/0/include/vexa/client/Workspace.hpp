// A workspace of this process.
#pragma once

#include <foundation/vexadata/InProcessCustomWorkspace.hpp>

#include <memory>

namespace vexa::client {

class Variables;

/// An engine that owns a set of named variables. Names are made of letters, digits and underscores and do not
/// begin with a digit. Values are shared with callers until one side writes. Not synchronised: one thread at
/// a time.
class VEXADATA_API WorkspaceEngine {
public:
    /// An empty workspace.
    WorkspaceEngine();
    ~WorkspaceEngine();
    WorkspaceEngine(const WorkspaceEngine&) = delete;
    WorkspaceEngine& operator=(const WorkspaceEngine&) = delete;

    /// A way in, which must not outlive the engine; any number of them. All of its operations throw
    /// InvalidVariableNameException for a name that is none; a variable that is not there reads as an empty
    /// array, with the status NOT_SET in bulk. A bulk set that fails changes nothing. Names are listed in
    /// alphabetical order.
    foundation::vexadata::InProcessCustomWorkspace workspace() noexcept;

private:
    std::unique_ptr<Variables> variables_;
};

} // namespace vexa::client
