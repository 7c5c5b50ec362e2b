#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "command_table.h"
#include "document_fixture.h"

namespace velmora::test {

/// A document whose commands are run by their ids, each of which must be on, and files beside it.
class CommandTest : public DocumentTest {
public:
    std::filesystem::path file(const std::string& name, const std::string& text) {
        writeFileText(folder / name, text);
        return folder / name;
    }

    void run(const std::string& id) {
        ASSERT_FALSE(isCommandOff(doc, id)) << id;
        doc.runCommand(findCommand(id)->run);
    }

    /// Sets `fields` in the dialog that the command shows, then OK.
    void runWith(const std::string& id, const std::vector<std::pair<std::string, std::string>>& fields) {
        ui.dialogs.push_back(fields);
        run(id);
    }
};

} // namespace velmora::test
