#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Stands in for the fuzzer where there is none: runs a target once with each file of the folder that is
/// named. A target ends the program when it finds something.
int main(int argc, char **argv)
{
    int inputs = 0;
    for (const auto &file : std::filesystem::directory_iterator(argc > 1 ? argv[1] : ".")) {
        std::ifstream stream(file.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
        std::fprintf(stderr, "%s\n", file.path().c_str()); // the last one is it, if this ends here
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
        ++inputs;
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}
