#include "interchange.h"

#include <exception>
#include <iostream>
#include <memory>
#include <utility>

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

// The words of an error on one line; an error that has none is told by its kind.
std::string causeOf(const GenericError& error) {
    if (error.text() == "...") {
        return error.name() + ": what stands there cannot be read";
    }
    std::string cause;
    for (const char letter : error.text()) {
        cause += letter == '\n' ? "; " : std::string(1, letter);
    }
    while (cause.ends_with("; ")) {
        cause.resize(cause.size() - 2);
    }
    return cause;
}

// The one place where the errors of the readers and writers end. What is shown of them is also handed to `tell`, in
// the words of the error alone.
bool guarded(const ShowMessage& showMessage, const std::function<void()>& step,
             const std::function<void(const std::string&)>& tell) {
    try {
        step();
        return true;
    } catch (const GenericError& error) {
        tell(causeOf(error));
        showMessage(error.message());
    } catch (const std::exception& error) {
        tell(error.what());
        std::cerr << error.what() << '\n';
    }
    return false;
}

// Reads by one of the readers; what it has counted is kept whether it comes to the end or not.
template <class Reader, class... Regions>
void readBy(const std::filesystem::path& path, const ReportProgress& report, FileRead& record, Regions&... regions) {
    Reader reader;
    reader.report = report;
    try {
        reader.read(path, regions...);
    } catch (...) {
        record = std::move(reader.record);
        throw;
    }
    record = std::move(reader.record);
}

template <class Reader>
Reader reporting(const ReportProgress& report) {
    Reader reader;
    reader.report = report;
    return reader;
}

void readByType(FileType type, const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured,
                const ReportProgress& report, FileRead& record) {
    if (type == FileType::Tecplot) {
        readBy<zTecplotReader>(path, report, record, structured, unstructured);
    } else if (type == FileType::Vrml) {
        readBy<zVRMLReader>(path, report, record, unstructured);
    } else {
        readBy<zSTLReader>(path, report, record, unstructured);
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

std::int64_t trianglesLeftOut(const std::filesystem::path& path, const zRegion_fe& unstructured) {
    return fileTypeOf(path) == FileType::Stl ? zSTLReader::facetsLeftOut(unstructured) : 0;
}

void transposeZones(zRegion& region) {
    for (auto& zone : region.blocks) {
        zone = transposed(*zone);
    }
}

bool readGeometry(const std::filesystem::path& path, bool transpose, zRegion& structured, zRegion_fe& unstructured,
                  const ShowMessage& showMessage, const ReportProgress& report, FileRead* record) {
    const FileType type = fileTypeOf(path);
    if (type == FileType::Other) {
        return false;
    }
    FileRead read;
    const auto step = [&] {
        const std::size_t zonesBefore = unstructured.blocks.size();
        readByType(type, path, structured, unstructured, report, read);
        checkZones(unstructured, zonesBefore);
        if (transpose) {
            transposeZones(structured);
        }
    };
    // Of a file that fails on the way nothing is taken.
    const auto fail = [&read](const std::string& text) {
        read.losesGeometry(text);
        for (auto& [kind, count] : read.kept) {
            count = 0;
        }
    };
    const bool whole = guarded(showMessage, step, fail);
    if (record != nullptr) {
        *record = std::move(read);
    }
    return whole;
}

bool writeGeometry(const std::filesystem::path& path, std::int32_t precision, const zRegion& structured,
                   const zRegion_fe& unstructured, const ShowMessage& showMessage, const ReportProgress& report,
                   WriteOutcome* outcome) {
    const FileType type = fileTypeOf(path);
    WriteOutcome result;
    const auto step = [&] {
        if (type == FileType::Tecplot) {
            auto writer = reporting<zTecplotReader>(report);
            writer.structuredTarget = &structured;
            writer.unstructuredTarget = &unstructured;
            result = writer.write(path, precision);
        } else if (type == FileType::Vrml) {
            result = reporting<zVRMLReader>(report).write(path, unstructured);
        } else if (type == FileType::Stl) {
            result = reporting<zSTLReader>(report).write(path, unstructured);
        }
    };
    const bool written = guarded(showMessage, step, [&result](const std::string& text) { result.problem = text; });
    if (outcome != nullptr) {
        *outcome = std::move(result);
    }
    return written;
}

} // namespace velmora
