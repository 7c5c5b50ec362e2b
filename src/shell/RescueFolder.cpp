#include "RescueFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "SafeFile.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

constexpr const char* lockName = "lock";
/// A folder without a lock this old was not made just now: its process ended in the middle of that.
constexpr std::chrono::hours abandoned{1};

fs::path folderFromEnvironment(const char* variable) {
    const char* value = std::getenv(variable);
    const fs::path folder = value == nullptr ? fs::path() : fs::path(value);
    return folder.is_absolute() ? folder : fs::path();
}

void removeAll(const fs::path& folder) {
    std::error_code error;
    fs::remove_all(folder, error);
}

} // namespace

fs::path rescueRoot() {
    fs::path state = folderFromEnvironment("XDG_STATE_HOME");
    if (state.empty()) {
        const fs::path home = folderFromEnvironment("HOME");
        state = home.empty() ? home : home / ".local" / "state";
    }
    return state.empty() ? state : state / "velmora" / "rescue";
}

RescueFolder::RescueFolder(RescueFolder&& other) noexcept
    : folder_(std::move(other.folder_)), lock_(std::exchange(other.lock_, -1)) {}

RescueFolder& RescueFolder::operator=(RescueFolder&& other) noexcept {
    std::swap(folder_, other.folder_);
    std::swap(lock_, other.lock_);
    return *this;
}

RescueFolder::~RescueFolder() {
    if (lock_ >= 0) {
        ::close(lock_);
    }
}

std::optional<RescueFolder> RescueFolder::make(const fs::path& root) {
    std::error_code error;
    if (root.empty() || (fs::create_directories(root, error), error)) {
        return std::nullopt;
    }
    std::string folder = (root / "XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) {
        return std::nullopt;
    }
    const int lock = ::open((folder + "/" + lockName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0 || ::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        if (lock >= 0) {
            ::close(lock);
        }
        removeAll(folder);
        return std::nullopt;
    }
    return RescueFolder(folder, lock);
}

/// None when its process still runs.
std::optional<RescueFolder> RescueFolder::takeOver(const fs::path& folder) {
    const int lock = ::open((folder / lockName).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (lock < 0) {
        std::error_code error;
        const auto changed = fs::last_write_time(folder, error);
        if (!error && fs::file_time_type::clock::now() - changed > abandoned) {
            removeAll(folder);
        }
        return std::nullopt;
    }
    if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        ::close(lock);
        return std::nullopt;
    }
    return RescueFolder(folder, lock);
}

std::vector<RescueFolder> RescueFolder::left(const fs::path& root) {
    std::vector<std::pair<fs::file_time_type, RescueFolder>> found;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(root, error)) {
        std::error_code ignored;
        if (entry.is_symlink(ignored) || !entry.is_directory(ignored)) {
            continue;
        }
        std::optional<RescueFolder> folder = takeOver(entry.path());
        if (!folder) {
            continue;
        }
        const auto written = fs::last_write_time(folder->copy(), ignored);
        if (ignored) {
            folder->remove(); // its process ended before there was a copy
        } else {
            found.emplace_back(written, std::move(*folder));
        }
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<RescueFolder> folders;
    folders.reserve(found.size());
    for (auto& [written, folder] : found) {
        folders.push_back(std::move(folder));
    }
    return folders;
}

bool RescueFolder::write(std::string_view bytes) const {
    SafeFile file(copy());
    return file.write(bytes) && file.commit();
}

std::optional<std::string> RescueFolder::read() const {
    std::ifstream file(copy(), std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return file.is_open() && !file.bad() ? std::optional(std::move(bytes)) : std::nullopt;
}

void RescueFolder::remove() {
    // The lock goes last: nobody takes the folder for one that was left.
    removeAll(folder_);
    if (lock_ >= 0) {
        ::close(std::exchange(lock_, -1));
    }
}

} // namespace velmora
