#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace velmora {

/// ni * nj * nk; 0 when one of them is not positive or the product has no room in 32 bits.
std::int32_t gridSize(std::int32_t ni, std::int32_t nj, std::int32_t nk);

/// A named field over up to three running indices, the first one fastest: element (i, j, k) is
/// data[i * si + j * sj + k * sk].
template <class T>
class zArray final {
public:
    std::int32_t ni;
    std::int32_t si = 1;
    std::int32_t nj;
    std::int32_t sj;
    std::int32_t nk;
    std::int32_t sk;
    std::int32_t size;
    std::string name;
    std::vector<T> data; ///< `size` values

    /// A field of ni by nj by nk zeros. A negative extent counts as 0, and extents whose product has no room in 32
    /// bits make an array of size 0.
    zArray(std::int32_t niValue, std::int32_t njValue, std::int32_t nkValue, std::string nameValue);
    /// The same around values that exist already; `values` should hold ni * nj * nk of them; what is
    /// missing becomes zeros, a surplus is dropped.
    zArray(std::int32_t niValue, std::int32_t njValue, std::int32_t nkValue, std::string nameValue,
           std::vector<T> values);
    zArray(const zArray&) = default;
    zArray& operator=(const zArray&) = default;
    virtual ~zArray() = default;
};

extern template class zArray<double>;

} // namespace velmora
