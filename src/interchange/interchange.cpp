#include "interchange.h"

#include <exception>
#include <iostream>
#include <memory>

#include "zExceptions.h"
#include "zSTLReader.h"
#include "zTecplotReader.h"
#include "zVRMLReader.h"

namespace velmora {

namespace {

constexpr const char* unitName = "interchange";

enum class FileType { Tecplot, Vrml, Stl, Other };

FileType fileTypeOf(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    for (char& c : extension) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return extension == ".dat"   ? FileType::Tecplot
           : extension == ".wrl" ? FileType::Vrml
           : extension == ".stl" ? FileType::Stl
                                 : FileType::Other;
}

// The one place where the errors of the readers and writers end.
bool guarded(const ShowMessage& showMessage, const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const GenericError& error) {
        showMessage(error.message());
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return false;
}

template <class Reader>
Reader reporting(const ReportProgress& report) {
    Reader reader;
    reader.report = report;
    return reader;
}

void readByType(FileType type, const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured,
                const ReportProgress& report) {
    if (type == FileType::Tecplot) {
        reporting<zTecplotReader>(report).read(path, structured, unstructured);
    } else if (type == FileType::Vrml) {
        reporting<zVRMLReader>(report).read(path, unstructured);
    } else {
        reporting<zSTLReader>(report).read(path, unstructured);
    }
}

// Everything behind takes for granted that elements name nodes which exist.
void checkZones(const zRegion_fe& region, std::size_t first) {
    for (std::size_t zone = first; zone < region.blocks.size(); ++zone) {
        if (!consistent(*region.blocks[zone])) {
            throw ValueError(unitName, __LINE__);
        }
    }
}

void transposeArray(const zArray<double>& from, zArray<double>& to) {
    const auto at = [&to](std::int32_t j, std::int32_t i, std::int32_t k) {
        return static_cast<std::size_t>(std::int64_t{j} * to.si + std::int64_t{i} * to.sj + std::int64_t{k} * to.sk);
    };
    std::size_t source = 0;
    for (std::int32_t k = 0; k < from.nk; ++k) {
        for (std::int32_t j = 0; j < from.nj; ++j) {
            for (std::int32_t i = 0; i < from.ni; ++i) {
                to.data[at(j, i, k)] = from.data[source++];
            }
        }
    }
}

std::unique_ptr<zBlock> transposed(const zBlock& zone) {
    auto result = std::make_unique<zBlock>(zone.jmax, zone.imax, zone.kmax);
    result->title = zone.title;
    for (const auto& variable : zone.variables) {
        auto copy = std::make_unique<zArray<double>>(zone.jmax, zone.imax, zone.kmax, variable->name);
        const bool wholeZone = variable->ni == zone.imax && variable->nj == zone.jmax && variable->nk == zone.kmax;
        if (wholeZone && copy->size > 0 && variable->data.size() == copy->data.size()) {
            transposeArray(*variable, *copy);
        }
        result->variables.push_back(std::move(copy));
    }
    return result;
}

} // namespace

void transposeZones(zRegion& region) {
    for (auto& zone : region.blocks) {
        zone = transposed(*zone);
    }
}

bool readGeometry(const std::filesystem::path& path, bool transpose, zRegion& structured, zRegion_fe& unstructured,
                  const ShowMessage& showMessage, const ReportProgress& report) {
    const FileType type = fileTypeOf(path);
    if (type == FileType::Other) {
        return false;
    }
    return guarded(showMessage, [&] {
        const std::size_t zonesBefore = unstructured.blocks.size();
        readByType(type, path, structured, unstructured, report);
        checkZones(unstructured, zonesBefore);
        if (transpose) {
            transposeZones(structured);
        }
    });
}

bool writeGeometry(const std::filesystem::path& path, std::int32_t precision, const zRegion& structured,
                   const zRegion_fe& unstructured, const ShowMessage& showMessage, const ReportProgress& report) {
    const FileType type = fileTypeOf(path);
    return guarded(showMessage, [&] {
        if (type == FileType::Tecplot) {
            auto writer = reporting<zTecplotReader>(report);
            writer.structuredTarget = &structured;
            writer.unstructuredTarget = &unstructured;
            writer.write(path, precision);
        } else if (type == FileType::Vrml) {
            reporting<zVRMLReader>(report).write(path, unstructured);
        } else if (type == FileType::Stl) {
            reporting<zSTLReader>(report).write(path, unstructured);
        }
    });
}

} // namespace velmora
