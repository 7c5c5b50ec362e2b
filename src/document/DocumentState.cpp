#include "DocumentState.h"

#include <algorithm>
#include <utility>

#include "DialogValues.h"
#include "Digest.h"
#include "count_limit.h"

namespace velmora {

namespace {

bool sameShape(const Patch& a, const Patch& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const PointList& x, const PointList& y) { return x.size() == y.size(); });
}

} // namespace

DocumentState::DocumentState(UserInterface& ui, const std::filesystem::path& documentsFolder)
    : modelFile(ui, documentsFolder), dialogs(std::make_unique<DialogValues>(patches, ui, documentsFolder)) {
    blockList.fill(-1);
}

DocumentState::~DocumentState() = default;

std::int32_t DocumentState::partCount() const {
    return structureKind == StructureKind::Unstructured ? static_cast<std::int32_t>(feRegion.blocks.size())
                                                        : countOf(patches);
}

bool DocumentState::inBlock(std::int32_t patch) const {
    const auto end = blockList.begin() + blockCount;
    return std::find(blockList.begin(), end, patch) != end;
}

std::vector<bool> DocumentState::blockMask() const {
    std::vector<bool> mask(static_cast<std::size_t>(partCount()), false);
    for (std::int32_t i = 0; i < blockCount; ++i) {
        const std::int32_t part = blockList[static_cast<std::size_t>(i)];
        if (part >= 0 && part < partCount()) {
            mask[static_cast<std::size_t>(part)] = true;
        }
    }
    return mask;
}

std::vector<std::int32_t> DocumentState::chosenPatches() const {
    std::vector<std::int32_t> chosen;
    const std::int32_t candidates = blockCount < 1 ? partCount() : blockCount;
    for (std::int32_t i = 0; i < candidates; ++i) {
        const std::int32_t patch = blockCount < 1 ? i : blockList[static_cast<std::size_t>(i)];
        if (patch >= 0 && patch < partCount()) {
            chosen.push_back(patch);
        }
    }
    return chosen;
}

std::vector<bool> DocumentState::chosenMask() const {
    return blockCount < 1 ? std::vector<bool>(static_cast<std::size_t>(partCount()), true) : blockMask();
}

std::vector<std::int32_t> DocumentState::chosenInModelOrder() const {
    const std::vector<bool> chosen = chosenMask();
    std::vector<std::int32_t> numbers;
    for (std::int32_t k = 0; k < countOf(patches); ++k) {
        if (chosen[static_cast<std::size_t>(k)]) {
            numbers.push_back(k);
        }
    }
    return numbers;
}

const Comparison* DocumentState::comparison() const {
    if (!foundComparison) {
        return nullptr;
    }
    if (comparedLook_.revision != geometryRevision_ || comparedLook_.digest != comparedDigest) {
        comparedLook_ = {geometryRevision_, comparedDigest, geometryDigest(patches, feRegion) == comparedDigest};
    }
    return comparedLook_.same ? &*foundComparison : nullptr;
}

PointList* DocumentState::sectionAt(std::int32_t patch, std::int32_t section) {
    if (patch < 0 || patch >= countOf(patches)) {
        return nullptr;
    }
    Patch& sections = patches[static_cast<std::size_t>(patch)];
    if (section < 0 || section >= countOf(sections)) {
        return nullptr;
    }
    return &sections[static_cast<std::size_t>(section)];
}

zVec<double>* DocumentState::pointAt(std::int32_t patch, std::int32_t section, std::int32_t point) {
    PointList* points = sectionAt(patch, section);
    if (points == nullptr || point < 0 || point >= countOf(*points)) {
        return nullptr;
    }
    return &(*points)[static_cast<std::size_t>(point)];
}

std::optional<zVec<double>> DocumentState::positionAt(std::int32_t patch, std::int32_t section,
                                                      std::int32_t point) const {
    zVec<double> position;
    if (structureKind == StructureKind::Unstructured) {
        const bool found = feRegion.getNode(patch, point, position.x, position.y, position.z) == 0;
        return found ? std::optional(position) : std::nullopt;
    }
    const auto* found = const_cast<DocumentState*>(this)->pointAt(patch, section, point);
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

MemoryRoom DocumentState::memoryRoom(double bytesEach) const {
    return {0.5 * static_cast<double>(freeMemory()), bytesEach};
}

Patch* DocumentState::fieldOfPatch(std::int32_t patch) {
    if (patch < 0 || patch >= countOf(patches) || patch >= countOf(fieldPatches)) {
        return nullptr;
    }
    Patch& field = fieldPatches[static_cast<std::size_t>(patch)];
    return sameShape(field, patches[static_cast<std::size_t>(patch)]) ? &field : nullptr;
}

PointList* DocumentState::fieldOfSection(std::int32_t patch, std::int32_t section) {
    Patch* const field = fieldOfPatch(patch);
    return field != nullptr && section >= 0 && section < countOf(*field) ? &(*field)[static_cast<std::size_t>(section)]
                                                                         : nullptr;
}

PatchList* DocumentState::wholeField() {
    const bool whole = patches.size() == fieldPatches.size() &&
                       std::equal(patches.begin(), patches.end(), fieldPatches.begin(), sameShape);
    return whole ? &fieldPatches : nullptr;
}

FieldWords DocumentState::fieldWords() const {
    return {fieldTitleLine, fieldVariablesLine, fieldCount, fieldLoaded, fieldMode};
}

void DocumentState::takeFieldWords(FieldWords&& words) noexcept {
    fieldTitleLine = std::move(words.titleLine);
    fieldVariablesLine = std::move(words.variablesLine);
    fieldCount = words.count;
    fieldLoaded = words.loaded;
    fieldMode = words.mode;
}

void DocumentState::checkRegularity(const PatchList& list) {
    bool sawRegular = false;
    const Regularity regularity = regularityOf(list, &sawRegular);
    if (sawRegular && fieldLoaded) {
        fieldMode = true;
    }
    if (regularity != Regularity::Undecided) {
        structureKind = StructureKind::Structured;
        fileKind = regularity == Regularity::Regular ? FileKind::Apt : FileKind::Skl;
    }
}

void DocumentState::retitle() {
    checkRegularity(patches);
    if (modelFile.titleWrong || structureKind != StructureKind::Structured) {
        return;
    }
    if (fileKind == FileKind::Apt) {
        modelFile.takeExtension(fieldMode ? "dat" : "apt");
    } else if (fileKind == FileKind::Skl) {
        modelFile.takeExtension("skl");
    }
}

void DocumentState::forgetKinds() {
    structureKind = StructureKind::None;
    fileKind = FileKind::None;
    secondKind = SecondKind::None;
}

void DocumentState::clearModel() {
    ++geometryRevision_;
    patches.clear();
    feRegion.blocks.clear();
    forgetKinds();
    fieldLoaded = false;
    fieldMode = false;
    fieldOpening = false;
    fieldPatches.clear();
    cbcAppended = false;
    gridNamed = false;
}

void DocumentState::emptyBlock() {
    blockList.fill(-1);
    blockCount = 0;
}

} // namespace velmora
