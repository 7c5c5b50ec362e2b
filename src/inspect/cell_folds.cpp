#include "cell_folds.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

using Normal = std::array<double, 3>;

bool pointAgainstEachOther(const Normal& a, const Normal& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] < 0.0;
}

class FoldFinder {
public:
    FoldFinder(const ModelFaces& model, const EdgeTable& edges)
        : model_(model), normals_(model.firstTriangle.front()), folded_(model.faces.size()) {
        for (std::size_t cell = 0; cell < normals_.size(); ++cell) {
            addCell(cell);
        }
        edges.forEach([this](std::int32_t, std::int32_t, std::span<const EdgeUse> uses) {
            while (uses.size() > 1 && uses.front().face() < normals_.size()) {
                const std::size_t count = usesOfOnePatch(uses);
                compareAll(uses.first(count));
                uses = uses.subspan(count);
            }
        });
    }

    std::vector<bool> takeFolded() { return std::move(folded_); }

private:
    void addCell(std::size_t cell) {
        const auto& [a, b, c, d] = model_.faces[cell].corners;
        const SharedPoints& points = model_.points;
        const zVec<double> first = doubleArea(points.at(a), points.at(b), points.at(c));
        const zVec<double> second = doubleArea(points.at(a), points.at(c), points.at(d));
        const zVec<double> sum = first + second;
        normals_[cell] = {sum.x, sum.y, sum.z};
        folded_[cell] = dot(first, second) < 0.0;
    }

    /// How many of the first occurrences are of the same patch; they come by rising faces, and so by patches.
    std::size_t usesOfOnePatch(std::span<const EdgeUse> uses) const {
        const std::size_t face = uses.front().face();
        const auto behind = std::partition_point(model_.patches.begin(), model_.patches.end(),
                                                 [face](const PatchCells& p) { return p.firstFace <= face; });
        const std::size_t end = behind == model_.patches.end() ? normals_.size() : behind->firstFace;
        std::size_t count = 1;
        while (count < uses.size() && uses[count].face() < end) {
            ++count;
        }
        return count;
    }

    void compareAll(std::span<const EdgeUse> cells) {
        if (cells.size() == 2) {
            compare(cells[0].face(), cells[1].face());
            return;
        }
        // Where a grid runs over the same place many times, many normals are equal: each is compared once.
        std::vector<Normal> different;
        for (const EdgeUse& use : cells) {
            different.push_back(normals_[use.face()]);
        }
        std::sort(different.begin(), different.end());
        different.erase(std::unique(different.begin(), different.end()), different.end());
        for (const EdgeUse& use : cells) {
            const Normal& normal = normals_[use.face()];
            const bool against = std::any_of(different.begin(), different.end(), [&normal](const Normal& other) {
                return pointAgainstEachOther(normal, other);
            });
            folded_[use.face()] = folded_[use.face()] || against;
        }
    }

    void compare(std::size_t cell, std::size_t other) {
        if (pointAgainstEachOther(normals_[cell], normals_[other])) {
            folded_[cell] = true;
            folded_[other] = true;
        }
    }

    const ModelFaces& model_;
    std::vector<Normal> normals_; ///< of the cells
    std::vector<bool> folded_;
};

} // namespace

std::vector<bool> foldedCells(const ModelFaces& model, const EdgeTable& edges) {
    return FoldFinder(model, edges).takeFolded();
}

} // namespace velmora
