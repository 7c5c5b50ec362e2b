// Runs a fuzz target over the files of the folders given, each whole and cut at about a hundred places: what the
// fuzzer once looked at stays looked at. The target itself aborts on what must not be.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t cuts = 100;

void replay(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const std::size_t step = text.size() / cuts + 1;
    for (std::size_t size = 0; size < text.size(); size += step) {
        LLVMFuzzerTestOneInput(bytes, size);
    }
    LLVMFuzzerTestOneInput(bytes, text.size());
}

} // namespace

int main(int count, char** words) {
    int files = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(words[i])) {
            replay(entry.path());
            ++files;
        }
    }
    std::printf("%d files\n", files);
    return files > 0 ? 0 : 1;
}
