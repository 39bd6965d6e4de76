// Runs a fuzz target over files it once failed on, without libFuzzer, so the
// ordinary build and test run keep every such input honest. Each argument is
// a file or a folder of files; a failure aborts, as it does under libFuzzer.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> inputsUnder(const fs::path& where) {
    if (!fs::is_directory(where)) return {where};
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(where))
        if (entry.is_regular_file()) files.push_back(entry.path());
    return files;
}

bool replay(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "can't read %s\n", file.c_str());
        return false;
    }
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    std::fprintf(stderr, "%s\n", file.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i)
        for (const fs::path& file : inputsUnder(argv[i])) {
            if (!replay(file)) return 1;
            ++count;
        }
    std::printf("%zu inputs ran clean\n", count);
    return count > 0 ? 0 : 1;
}
