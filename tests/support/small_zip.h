#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora::test {

inline std::uint32_t zipChecksum(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const char c : bytes) {
        sum ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 1U) != 0 ? sum >> 1 ^ 0xEDB88320U : sum >> 1;
        }
    }
    return ~sum;
}

/// A zip archive of parts with their names, nothing of it compressed.
inline std::string zipOf(const std::vector<std::pair<std::string, std::string>>& parts) {
    const auto number = [](std::uint64_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i) {
            text += static_cast<char>(value & 0xFF);
            value >>= 8;
        }
        return text;
    };
    const auto joined = [](std::initializer_list<std::string_view> texts) {
        std::string text;
        for (const std::string_view part : texts) {
            text += part;
        }
        return text;
    };
    std::string archive;
    std::string directory;
    for (const auto& [name, content] : parts) {
        // Version, flags, method, time, date, checksum, sizes packed and not, lengths of the name and of nothing more.
        const std::string size = number(content.size(), 4);
        const std::string common =
            joined({number(20, 2), number(0, 6), number(0x21, 2), number(zipChecksum(content), 4), size, size,
                    number(name.size(), 2), number(0, 2)});
        directory += joined({"PK\x01\x02", number(20, 2), common, number(0, 10), number(archive.size(), 4), name});
        archive += joined({"PK\x03\x04", common, name, content});
    }
    const std::string count = number(parts.size(), 2);
    return joined({archive, directory, "PK\x05\x06", number(0, 4), count, count, number(directory.size(), 4),
                   number(archive.size(), 4), number(0, 2)});
}

} // namespace velmora::test
