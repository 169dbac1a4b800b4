// A folder for the files of one test.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace storage_tests {

class Folder {
public:
    Folder() : path_(std::filesystem::temp_directory_path() / "vexadata-XXXXXX") {
        std::string name = path_;
        path_ = ::mkdtemp(name.data());
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string operator/(const std::string& name) const { return path_ / name; }
    std::string content(const std::string& name) const {
        std::ifstream in(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path_ / name, std::ios::binary) << bytes;
    }
    std::set<std::string> names() const {
        std::set<std::string> all;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            all.insert(entry.path().filename());
        }
        return all;
    }

private:
    std::filesystem::path path_;
};

} // namespace storage_tests
