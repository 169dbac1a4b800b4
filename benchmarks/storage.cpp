// Saving and loading, beside the bare calls of the system, nlohmann::json and NumPy. Ratios of one run count. An
// argument is the size of the large array in MB, 800 by default; the files lie in the folder for temporary files.
#ifdef VEXADATA_HAVE_STORAGE
#    include "Contest.hpp"

#    include <foundation/vexadata/VexaData.hpp>
#    include <vexa/storage/Reader.hpp>
#    include <vexa/storage/Writer.hpp>

#    include <fcntl.h>
#    include <sys/mman.h>
#    include <sys/stat.h>
#    include <unistd.h>

#    include <algorithm>
#    include <array>
#    include <cstdlib>
#    include <filesystem>
#    include <memory>
#    include <ostream>
#    include <streambuf>
#    include <string>
#    include <vector>

#    ifdef VEXADATA_HAVE_JSON
#        include <nlohmann/json.hpp>
#    endif

using namespace foundation::vexadata;
using bench::require;
using bench::Task;
namespace storage = vexa::storage;

namespace {

const std::filesystem::path folder =
    std::filesystem::temp_directory_path() / ("vexadata-bench-" + std::to_string(getpid()));
std::string file(const char* name) { return folder / name; }

constexpr std::size_t mega = 1'000'000;

class RawFile {
public:
    RawFile(const std::string& path, int flags) : number_(open(path.c_str(), flags | O_CLOEXEC, 0666)) {
        require(number_ >= 0);
    }
    ~RawFile() { close(number_); }
    int number() const { return number_; }

private:
    int number_;
};

void writeRaw(const std::string& path, const void* data, std::size_t size, bool sync) {
    const RawFile out(path, O_WRONLY | O_CREAT | O_TRUNC);
    const auto* from = static_cast<const char*>(data);
    while (size != 0) {
        const ssize_t count = write(out.number(), from, size);
        require(count > 0);
        from += count;
        size -= static_cast<std::size_t>(count);
    }
    require(!sync || fsync(out.number()) == 0);
}

bool largeTasks(std::size_t megabytes) {
    const std::size_t count = megabytes * mega / sizeof(double);
    const std::size_t bytes = count * sizeof(double);
    auto array = std::make_shared<TypedArray<double>>(ArrayFactory().createArray<double>({count, 1}));
    std::fill(array->begin(), array->end(), 1.5);
    const double* const values = &*array->cbegin();
    const std::string size = std::to_string(megabytes) + " MB of doubles";
    // A new file each time, on both sides: whoever overwrites one pays for what lay there.
    const auto raw = [=] {
        writeRaw(file("raw.new"), values, bytes, true);
        std::filesystem::rename(file("raw.new"), file("raw"));
        return 0.0;
    };
    const auto ours = [=] {
        storage::save(file("large.cbor"), *array);
        return 0.0;
    };
    const int rounds = megabytes > 100 ? 3 : 15;
    bool agree = report(
        Task{"save " + size + " (raw: write, fsync)", 1, 1.1, {{"raw", raw}, {"vexadata", ours}}}, rounds);
    const auto mapRaw = [=] {
        const RawFile in(file("raw"), O_RDONLY);
        void* const pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE, in.number(), 0);
        require(pages != MAP_FAILED);
        const double first = *static_cast<const double*>(pages);
        munmap(pages, bytes);
        return first;
    };
    const auto mapOurs = [] {
        const TypedArray<double> mapped = storage::load(file("large.cbor"));
        return double(mapped[0]);
    };
    agree &= report(Task{"map it, first element (raw: mmap)", 1, 2, {{"raw", mapRaw}, {"vexadata", mapOurs}}},
                    101);
    const auto readRaw = [=] {
        const RawFile in(file("raw"), O_RDONLY);
        const std::unique_ptr<double[]> buffer(new double[count]);
        std::size_t done = 0;
        while (done < bytes) {
            const ssize_t some =
                read(in.number(), reinterpret_cast<char*>(buffer.get()) + done, bytes - done);
            require(some > 0);
            done += static_cast<std::size_t>(some);
        }
        return buffer[count - 1];
    };
    const auto readOurs = [=](storage::Check check) {
        const TypedArray<double> read =
            storage::load(file("large.cbor"), {storage::Placement::memory, check});
        return double(read[count - 1]);
    };
    agree &= report(Task{"read it into memory (raw: read)",
                         1,
                         1.1,
                         {{"raw", readRaw},
                          {"vexadata", [=] { return readOurs(storage::Check::whenRead); }},
                          {"unchecked", [=] { return readOurs(storage::Check::never); }}}},
                    rounds);
    return agree;
}

constexpr std::size_t strings = mega;

/// What NumPy needs for the same strings, in nanoseconds each.
void printNumpy() {
    const std::string script =
        "import numpy as np, time, sys\n"
        "a = np.array(['%020d' % k for k in range(" +
        std::to_string(strings) +
        ")])\n"
        "t = []\n"
        "for k in range(5):\n"
        "    b = time.perf_counter(); np.savez('" +
        file("numpy.npz") +
        "', a=a); m = time.perf_counter()\n"
        "    np.load('" +
        file("numpy.npz") +
        "')['a']; t.append((m - b, time.perf_counter() - m))\n"
        "print('    NumPy savez, load of the same, in its own process: %.4g, %.4g' % tuple(sorted(x)[2] * 1e9 / len(a) for x in zip(*t)))\n";
    std::fflush(stdout);
    if (std::system(("/usr/bin/python3 -c \"" + script + "\" 2>/dev/null").c_str()) != 0) {
        std::puts("    NumPy is not there");
    }
}

bool stringTasks() {
    auto array = std::make_shared<TypedArray<String>>(ArrayFactory().createArray<String>({strings, 1}));
    auto bytes = std::make_shared<std::string>();
    std::size_t k = 0;
    for (auto element : *array) {
        std::string digits = std::to_string(k++);
        digits.insert(0, 20 - digits.size(), '0');
        *bytes += digits;
        element = std::u16string(digits.begin(), digits.end());
    }
    const auto raw = [=] {
        std::FILE* const out = std::fopen(file("strings").c_str(), "wb");
        for (std::size_t n = 0; n < strings; ++n) {
            std::fwrite(bytes->data() + 20 * n, 1, 20, out);
        }
        require(fsync(fileno(out)) == 0);
        std::fclose(out);
        return 0.0;
    };
    bool agree = report(Task{"save 1e6 strings of 20 (raw: fwrite, fsync)",
                             strings,
                             3,
                             {{"raw", raw},
                              {"vexadata",
                               [=] {
                                   storage::save(file("strings.cbor"), *array);
                                   return 0.0;
                               }}}},
                        9);
    const auto readRaw = [=] {
        std::FILE* const in = std::fopen(file("strings").c_str(), "rb");
        std::array<char, 20> unit{};
        double total = 0;
        for (std::size_t n = 0; n < strings; ++n) {
            require(std::fread(unit.data(), 1, unit.size(), in) == unit.size());
            total += unit[19] - '0';
        }
        std::fclose(in);
        return total > 0 ? 1.0 : 0.0;
    };
    agree &= report(
        Task{"load them (raw: fread)",
             strings,
             3,
             {{"raw", readRaw},
              {"vexadata", [=] { return storage::load(file("strings.cbor")).isEmpty() ? 0.0 : 1.0; }}}},
        9);
    printNumpy();
    return agree;
}

#    ifdef VEXADATA_HAVE_JSON
constexpr std::size_t records = 100'000;
constexpr std::size_t fields = 10;

bool recordTasks() {
    const ArrayFactory factory;
    std::vector<std::string> names;
    for (std::size_t k = 0; k < fields; ++k) {
        names.push_back("field" + std::to_string(k));
    }
    auto array = std::make_shared<StructArray>(factory.createStructArray({records, 1}, names));
    auto document = std::make_shared<nlohmann::json>(nlohmann::json::array());
    std::size_t n = 0;
    for (auto record : *array) {
        std::vector<Array> values;
        nlohmann::json object;
        for (const std::string& name : names) {
            const auto value = static_cast<double>(n++) + 0.5;
            values.push_back(factory.createScalar(value));
            object[name] = value;
        }
        record = std::move(values);
        document->push_back(std::move(object));
    }
    const auto saveJson = [=] {
        const std::vector<std::uint8_t> bytes = nlohmann::json::to_cbor(*document);
        writeRaw(file("records.json"), bytes.data(), bytes.size(), true);
        return 0.0;
    };
    bool agree = report(Task{"save 1e5 records of 10 (raw: json::to_cbor)",
                             records,
                             1 / 3.0,
                             {{"raw", saveJson},
                              {"vexadata",
                               [=] {
                                   storage::save(file("records.cbor"), *array);
                                   return 0.0;
                               }}}},
                        5);
    const auto loadJson = [=] {
        std::vector<std::uint8_t> bytes(std::filesystem::file_size(file("records.json")));
        std::FILE* const in = std::fopen(file("records.json").c_str(), "rb");
        require(std::fread(bytes.data(), 1, bytes.size(), in) == bytes.size());
        std::fclose(in);
        return static_cast<double>(nlohmann::json::from_cbor(bytes).size());
    };
    agree &= report(Task{"load them (raw: json::from_cbor)",
                         records,
                         1 / 3.0,
                         {{"raw", loadJson},
                          {"vexadata",
                           [=] {
                               return static_cast<double>(
                                   storage::load(file("records.cbor")).getNumberOfElements());
                           }}}},
                    5);
    return agree;
}
#    endif

/// A file in which long runs of zeros are holes.
class SparseFile final : public std::streambuf {
public:
    explicit SparseFile(const std::string& path) : file_(path, O_WRONLY | O_CREAT | O_TRUNC) {}
    void finish() { require(ftruncate(file_.number(), end_) == 0); }

protected:
    std::streamsize xsputn(const char* data, std::streamsize size) override {
        const bool isHole =
            size > 4096 && std::all_of(data, data + size, [](char byte) { return byte == 0; });
        require(isHole || pwrite(file_.number(), data, static_cast<std::size_t>(size), end_) == size);
        end_ += size;
        return size;
    }

private:
    RawFile file_;
    off_t end_ = 0;
};

bool listTask(std::size_t megabytesEach) {
    constexpr std::size_t variables = 1'000;
    SparseFile buffer(file("list.cbor"));
    std::ostream stream(&buffer);
    storage::Writer writer(stream);
    for (std::size_t k = 0; k < variables; ++k) {
        writer.add("variable" + std::to_string(k),
                   ArrayFactory().createArray<double>({megabytesEach * mega / sizeof(double), 1}));
    }
    writer.finish();
    buffer.finish();
    const auto raw = [] {
        struct ::stat status {};
        require(::stat(file("list.cbor").c_str(), &status) == 0);
        return 1000.0;
    };
    const auto ours = [] {
        const storage::Reader reader(file("list.cbor"));
        return static_cast<double>(reader.variables().size());
    };
    const std::string name = "list 1,000 variables in " + std::to_string(megabytesEach) + " GB (raw: stat)";
    return report(Task{name, 1, 0, {{"raw", raw}, {"vexadata", ours}}, 5e6}, 51);
}

} // namespace

int main(int argc, char** argv) {
    const std::size_t megabytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 800;
    bench::printSetting();
    bench::printHeading();
    std::filesystem::create_directories(folder);
    bool agree = largeTasks(megabytes);
    agree &= largeTasks(1);
    agree &= stringTasks();
#    ifdef VEXADATA_HAVE_JSON
    agree &= recordTasks();
#    endif
    agree &= listTask(megabytes >= 800 ? 10 : 1);
    std::filesystem::remove_all(folder);
    return agree ? 0 : 1;
}
#else
#    include <cstdio>

int main() { std::puts("vexadata::storage was left out: libcbor or xxHash is not there"); }
#endif
