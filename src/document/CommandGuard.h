#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "DocumentState.h"

namespace velmora {

class VelmoraDoc;

/// What an exception is to be called towards the user.
std::string causeOf(const std::exception& error);

/// Stands around a command. When an exception passes, for want of memory say, the document goes back to what it was
/// before: the model to the snapshot that the command took, all small state to what was noted here. What to do about
/// the exception is left to whoever catches it.
class CommandGuard {
public:
    /// `document` must outlive the guard.
    explicit CommandGuard(VelmoraDoc& document);
    CommandGuard(const CommandGuard&) = delete;
    CommandGuard& operator=(const CommandGuard&) = delete;
    ~CommandGuard();

private:
    struct Kinds {
        StructureKind structure;
        FileKind file;
        SecondKind second;
    };
    struct Names {
        std::string currentPath;
        std::string currentDirectory;
        std::string fileExtension;
        std::string documentTitle;
        std::string status;
        std::filesystem::path chosenPath;
        std::filesystem::path undoPath;
    };

    /// Points beside the model.
    struct Lists {
        PointList lineBuffer;
        PointList joint;
        PointList before;
        PointList after;
    };

    void putBack() noexcept;
    void putBackModel() noexcept;
    void putBackState() noexcept;
    void tellViews() noexcept;

    VelmoraDoc& doc_;
    int exceptionsBefore_;
    SnapshotCounts counts_;
    Kinds kinds_;
    bool titleWrong_;
    Names names_;
    Lists lists_;
    Capture capture_;
    bool empty_; ///< there was no model
    std::vector<std::int32_t> block_;
    std::vector<bool> flags_;
};

} // namespace velmora
