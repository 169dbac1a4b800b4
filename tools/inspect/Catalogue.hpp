// The contents of files as the variables of a workspace.
#pragma once

#include "Inspect.hpp"

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/Print.hpp>
#include <vexa/client/Workspace.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::inspect {

class Catalogue {
public:
    /// Stores the contents of each file as a variable named after the file: a table as a struct of columns, a
    /// matrix as it is; of a file of saved arrays each, named as it was saved. Further ones of the same name get
    /// numbers.
    struct Entry {
        std::string file;
        Dataset data;
    };
    explicit Catalogue(std::vector<Entry> entries);

    /// A line of titles and one for each variable: name, class, dimensions, bytes. The columns of a table
    /// follow it, by names that `show` takes. Notes on numbers that were changed when they were read come
    /// last.
    std::string list() const;

    /// The values of a variable, or of a field of one, "weather" or "weather.wind", and notes on them. Throws
    /// InputError for an unknown name, and when `budget` does not suffice for the text.
    std::string show(const std::string& name, const foundation::vexadata::PrintOptions& options,
                     MemoryBudget& budget) const;

    /// All variables under the names of the workspace, in the order of the files.
    std::vector<NamedArray> variables() const;

private:
    struct Note {
        std::string name; // as `show` takes it
        std::string text;
    };

    void noteLosses(const std::string& variable, const Dataset& data);
    std::string notesOn(const std::string& name) const;
    foundation::vexadata::Array find(const std::string& name) const;

    mutable client::WorkspaceEngine engine_;
    std::vector<std::string> names_;  // in the order of the files
    std::vector<MemoryShare> memory_; // of what the workspace holds
    std::vector<Note> notes_;
};

} // namespace vexa::inspect
