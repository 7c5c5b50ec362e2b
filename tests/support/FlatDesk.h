#pragma once

#include <filesystem>
#include <string>

#include "small_models.h"

namespace velmora::test {

/// A folder of its own with three flat patches side by side, at x = 0 to 3, 5 to 8 and 10 to 13, each of 3 sections of
/// 4 points one unit apart.
struct FlatDesk {
    TemporaryFolder folder;
    std::filesystem::path model = folder / "flat.apt";

    FlatDesk() {
        std::string text;
        for (const int x : {0, 5, 10}) {
            text += "3 4\n";
            for (int n = 0; n < 3; ++n) {
                for (int m = 0; m < 4; ++m) {
                    text += std::to_string(x + m) + " " + std::to_string(n) + " 0\n";
                }
            }
        }
        writeFileText(model, text);
    }
};

} // namespace velmora::test
