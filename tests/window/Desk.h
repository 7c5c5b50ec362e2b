#pragma once

#include <filesystem>

#include "FlatDesk.h"

namespace velmora::test {

/// A folder of its own with a copy of a model.
struct Desk {
    TemporaryFolder folder;
    std::filesystem::path model;

    explicit Desk(const char* name = "m100_wingbody.apt") : model(folder / name) {
        std::filesystem::copy_file(std::filesystem::path(VELMORA_TEST_DATA) / name, model);
    }
};

} // namespace velmora::test
