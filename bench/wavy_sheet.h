#pragma once

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include "exchange_model.h"

namespace velmora::bench {

/// A wavy sheet of (columns - 1) (rows - 1) cells, each two triangles.
inline ExchangeModel wavySheet(int columns, int rows) {
    ExchangeModel model;
    Patch patch;
    for (int row = 0; row < rows; ++row) {
        PointList section;
        for (int column = 0; column < columns; ++column) {
            const double u = 0.01 * column;
            const double v = 0.013 * row;
            section.emplace_back(u + 0.1 * std::sin(v), v - 3.0, std::sin(3.0 * u) * std::cos(v));
        }
        patch.push_back(std::move(section));
    }
    model.patches.push_back(std::move(patch));
    return model;
}

/// A folder for files, gone with the object.
class FolderOfFiles {
public:
    FolderOfFiles() {
        std::string name = (std::filesystem::temp_directory_path() / "velmora_bench_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            std::abort();
        }
        path_ = name;
    }
    FolderOfFiles(const FolderOfFiles&) = delete;
    FolderOfFiles& operator=(const FolderOfFiles&) = delete;
    ~FolderOfFiles() { std::filesystem::remove_all(path_); }

    std::filesystem::path operator/(const char* name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

} // namespace velmora::bench
