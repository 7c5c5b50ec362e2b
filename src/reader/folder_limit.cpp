#include "folder_limit.h"

#include <cstdint>

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace velmora {

namespace {

constexpr std::uint64_t reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t making =
    LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_REMOVE_FILE;

void allow(int rules, const std::filesystem::path& place, std::uint64_t access) {
    landlock_path_beneath_attr rule{};
    rule.allowed_access = access;
    rule.parent_fd = ::open(place.c_str(), O_PATH | O_CLOEXEC);
    if (rule.parent_fd >= 0) {
        ::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
        ::close(rule.parent_fd);
    }
}

} // namespace

void keepToFolderOf(const std::filesystem::path& file, bool writes) {
    const std::filesystem::path folder = file.parent_path();
    landlock_ruleset_attr limits{};
    limits.handled_access_fs = reading | making;
    const auto rules = static_cast<int>(::syscall(SYS_landlock_create_ruleset, &limits, sizeof(limits), 0));
    if (rules < 0) {
        return;
    }
    for (const char* const system : {"/usr", "/lib", "/lib64", "/etc", "/proc", "/sys"}) {
        allow(rules, system, reading);
    }
    for (const char* const device : {"/dev/null", "/dev/zero", "/dev/random", "/dev/urandom"}) {
        allow(rules, device, LANDLOCK_ACCESS_FS_READ_FILE); // not all: files of others may stand in /dev/shm
    }
    allow(rules, folder.empty() ? "." : folder, writes ? reading | making : reading);
    allow(rules, file, LANDLOCK_ACCESS_FS_READ_FILE); // it may be a link to elsewhere itself
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0) {
        ::syscall(SYS_landlock_restrict_self, rules, 0);
    }
    ::close(rules);
}

} // namespace velmora
