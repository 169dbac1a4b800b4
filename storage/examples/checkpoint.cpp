// Saving the state of a computation, and going on with it: several variables in one file, listed and loaded one by one.
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/storage/Reader.hpp>
#include <vexa/storage/Writer.hpp>

#include <filesystem>
#include <iostream>

using namespace foundation::vexadata;
namespace storage = vexa::storage;

int main() {
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const std::string path = folder / "vexadata-checkpoint.cbor";
    const ArrayFactory factory;

    TypedArray<double> grid = factory.createArray<double>({1000, 500});
    grid[10][20] = 21.5;
    StructArray run = factory.createStructArray({1, 1}, {"name", "step"});
    run[0] = {factory.createCharArray("heat"), factory.createScalar(42.0)};
    storage::save(path, {{"grid", grid}, {"run", run}}); // replaces the file at once, or not at all

    const storage::Reader reader(path);
    for (const storage::VariableDescription& variable : reader.variables()) { // reads the list alone
        std::cout << variable.name << ": " << variable.dimensions[0] << 'x' << variable.dimensions[1] << ' '
                  << kindName(variable.type) << '\n';
    }
    TypedArray<double> again = reader.load("grid"); // mapped: memory is used as elements are touched
    std::cout << "grid[10][20] is " << again[10][20] << '\n';
    again[10][20] = 0; // changes this array, not the file
    const TypedArray<double> saved = reader.load("grid", {storage::Placement::memory});
    std::cout << "in the file it is " << saved[10][20] << '\n';
    try {
        reader.load("velocity");
    } catch (const storage::Error& error) {
        std::cout << std::string(error.what()).substr(folder.string().size() + 1) << '\n';
    }
    std::filesystem::remove(path);
}
