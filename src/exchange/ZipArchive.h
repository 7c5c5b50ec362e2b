#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct zip;

namespace velmora {

/// The parts of a zip archive in memory, which must outlive it.
class ZipArchive {
public:
    explicit ZipArchive(std::string_view bytes);

    bool isOpen() const { return archive_ != nullptr; }

    /// How reading a part went.
    enum class Part { Whole, Missing, Damaged, Stopped };
    /// Hands a part on piece by piece, whatever the case of the letters of its name, until `take` answers false.
    Part read(const std::string& name, const std::function<bool(std::string_view piece)>& take) const;

private:
    struct Close {
        void operator()(zip* archive) const;
    };
    std::unique_ptr<zip, Close> archive_;
};

} // namespace velmora
