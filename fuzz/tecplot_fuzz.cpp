// Any bytes as a Tecplot file: reading them ends without harm and gives what the plain transcription of the reader
// gives; zones read from them, written and read again are the same zones.

#include <stdexcept>
#include <string>

#include "fuzz_files.h"
#include "tecplot_reference.h"
#include "zExceptions.h"
#include "zTecplotReader.h"

using namespace velmora;

namespace {

bool equal(const ZoneVariables& a, const ZoneVariables& b) {
    for (std::size_t i = 0; i < a.size() && a.size() == b.size(); ++i) {
        if (a[i]->name != b[i]->name || a[i]->data != b[i]->data) {
            return false;
        }
    }
    return a.size() == b.size();
}

bool equal(const zBlock& a, const zBlock& b) {
    return a.title == b.title && a.imax == b.imax && a.jmax == b.jmax && a.kmax == b.kmax &&
           equal(a.variables, b.variables);
}

bool equal(const zBlock_fe& a, const zBlock_fe& b) {
    return a.title == b.title && a.nodeCount == b.nodeCount && a.elementCount == b.elementCount &&
           a.connectivity == b.connectivity && equal(a.variables, b.variables);
}

bool hasNumbers(const zBlock& zone) {
    return zone.total > 0 && !zone.variables.empty();
}

bool hasNumbers(const zBlock_fe& zone) {
    fuzz::require(consistent(zone));
    return zone.nodeCount > 0;
}

// A zone without numbers has no end: the header behind it counts as its own.
template <class Region>
bool readsAgain(const Region& region) {
    bool all = true;
    for (const auto& zone : region.blocks) {
        all = hasNumbers(*zone) && all;
    }
    return all;
}

template <class Region>
void compare(const Region& a, const Region& b) {
    fuzz::require(a.title == b.title && a.blocks.size() == b.blocks.size());
    for (std::size_t i = 0; i < a.blocks.size(); ++i) {
        fuzz::require(equal(*a.blocks[i], *b.blocks[i]));
    }
}

void checkTransformed(const reference::TecplotReader& plain, const zRegion& structured,
                      const zRegion_fe& unstructured) {
    std::size_t values = 0;
    for (const reference::TecplotReader::Zone& zone : plain.zones) {
        values += zone.connectivity.size();
    }
    std::size_t entries = 0;
    for (const auto& zone : unstructured.blocks) {
        entries += zone->connectivity.size();
    }
    fuzz::require(structured.blocks.size() + unstructured.blocks.size() <= plain.zones.size());
    fuzz::require(entries >= values);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::OutputFolder folder;
    const fuzz::InputFile input(data, size);
    reference::TecplotReader plain;
    plain.read(input.path());
    zRegion structured;
    zRegion_fe unstructured;
    try {
        zTecplotReader().read(input.path(), structured, unstructured);
    } catch (const GenericError& error) {
        fuzz::require(plain.fault && plain.fault->name == error.name() && plain.fault->text == error.text());
        return 0;
    } catch (const std::runtime_error&) {
        return 0; // a header that the regular expressions find too hard
    }
    fuzz::require(!plain.fault);
    checkTransformed(plain, structured, unstructured);
    if (!readsAgain(structured) || !readsAgain(unstructured)) {
        return 0;
    }
    zTecplotReader reader;
    reader.structuredTarget = &structured;
    reader.unstructuredTarget = &unstructured;
    reader.write(folder / "again.dat", 17);
    zRegion structuredAgain;
    zRegion_fe unstructuredAgain;
    reader.read(folder / "again.dat", structuredAgain, unstructuredAgain);
    compare(structured, structuredAgain);
    compare(unstructured, unstructuredAgain);
    return 0;
}
