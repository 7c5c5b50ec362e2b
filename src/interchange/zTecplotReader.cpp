#include "zTecplotReader.h"

#include <new>
#include <string>

#include "TecplotHeaderParser.h"
#include "TecplotHeaderScan.h"
#include "TecplotZoneData.h"
#include "TextStream.h"
#include "tecplot_unit.h"
#include "tecplot_writer.h"
#include "zExceptions.h"
#include "zone_conversion.h"

namespace velmora {

namespace {

// One file on its way into two regions.
class TecplotFile {
public:
    TecplotFile(const std::filesystem::path& path, bool coordinatesOnly, const ReportProgress& report)
        : stream_(path), data_(stream_, header_, coordinatesOnly) {
        if (!stream_.isOpen()) {
            throw FileError(tecplotUnit, __LINE__);
        }
        stream_.reportTo(report);
    }

    const std::string& title() const { return header_.title; }

    void read(zRegion& structured, zRegion_fe& unstructured) {
        while (stream_.good()) {
            if (parser_.parse(scan_.next())) {
                // Counted here, between header and data: an error in the data of the first zone speaks of zone 2.
                ++header_.zoneNumber;
                readZone(structured, unstructured);
            }
            skipToTecplotZone(stream_);
        }
    }

private:
    void readZone(zRegion& structured, zRegion_fe& unstructured) {
        const TecplotZoneType type = header_.zone.type;
        try {
            if (type == TecplotZoneType::Ordered) {
                if (auto zone = data_.readOrdered(scan_.zoneStart())) {
                    structured.blocks.push_back(std::move(zone));
                }
            } else if (type == TecplotZoneType::Triangles || type == TecplotZoneType::Quadrilaterals) {
                unstructured.blocks.push_back(data_.readTriangles(scan_.zoneStart()));
            } else {
                data_.skip(scan_.zoneStart());
            }
        } catch (const std::bad_alloc&) {
            throw SystemError(tecplotUnit, __LINE__);
        }
    }

    TextStream stream_;
    TecplotHeader header_;
    TecplotHeaderScan scan_{stream_};
    TecplotHeaderParser parser_{header_};
    TecplotZoneData data_;
};

} // namespace

void zTecplotReader::read(const std::filesystem::path& fileName, zRegion& structured, zRegion_fe& unstructured,
                          bool coordinatesOnly) {
    TecplotFile file(fileName, coordinatesOnly, report);
    file.read(structured, unstructured);
    if (!structured.blocks.empty() && !unstructured.blocks.empty()) {
        regionToSurface(structured, unstructured);
        structured.blocks.clear();
    }
    if (!structured.blocks.empty()) {
        structured.title = file.title();
    } else if (!unstructured.blocks.empty()) {
        unstructured.title = file.title();
    }
}

void zTecplotReader::write(const std::filesystem::path& fileName, std::int32_t precision) const {
    static const zRegion none;
    if (structuredTarget != nullptr && !structuredTarget->blocks.empty()) {
        writeTecplot(fileName, *structuredTarget, precision, report);
    } else if (unstructuredTarget != nullptr && !unstructuredTarget->blocks.empty()) {
        writeTecplot(fileName, *unstructuredTarget, precision, report);
    } else {
        writeTecplot(fileName, none, precision, report);
    }
}

} // namespace velmora
