#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// Where this user's rescue copies are: velmora/rescue in $XDG_STATE_HOME, else in ~/.local/state. Empty without a home.
std::filesystem::path rescueRoot();

/// A folder with one rescue copy. It is locked as long as the object lives: the system unlocks it when the process
/// ends, however that comes. The copy outlives the object.
class RescueFolder {
public:
    RescueFolder(RescueFolder&& other) noexcept;
    RescueFolder& operator=(RescueFolder&& other) noexcept;
    ~RescueFolder();

    /// A new folder, for its owner alone to read; none when it cannot be made.
    static std::optional<RescueFolder> make(const std::filesystem::path& root);
    /// Those with a copy whose process is no more, the newest first. They belong to this process from here on.
    static std::vector<RescueFolder> left(const std::filesystem::path& root);

    std::filesystem::path copy() const { return folder_ / "model"; }
    /// Puts the bytes in the place of the copy before; false when that stays.
    bool write(std::string_view bytes) const;
    std::optional<std::string> read() const;
    /// Removes the folder with all in it.
    void remove();

private:
    RescueFolder(std::filesystem::path folder, int lock) : folder_(std::move(folder)), lock_(lock) {}
    static std::optional<RescueFolder> takeOver(const std::filesystem::path& folder);

    std::filesystem::path folder_;
    int lock_ = -1;
};

} // namespace velmora
