#include "zArray.h"

#include <algorithm>
#include <limits>

namespace velmora {

std::int32_t gridSize(std::int32_t ni, std::int32_t nj, std::int32_t nk) {
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    const std::int64_t plane = std::int64_t{std::max(ni, 0)} * std::max(nj, 0);
    if (plane == 0 || nk <= 0 || plane > most || plane * nk > most) {
        return 0;
    }
    return static_cast<std::int32_t>(plane * nk);
}

template <class T>
zArray<T>::zArray(std::int32_t niValue, std::int32_t njValue, std::int32_t nkValue, std::string nameValue)
    : zArray(niValue, njValue, nkValue, std::move(nameValue),
             std::vector<T>(static_cast<std::size_t>(gridSize(niValue, njValue, nkValue)))) {}

template <class T>
zArray<T>::zArray(std::int32_t niValue, std::int32_t njValue, std::int32_t nkValue, std::string nameValue,
                  std::vector<T> values)
    : ni(std::max(niValue, 0)), nj(std::max(njValue, 0)), sj(ni), nk(std::max(nkValue, 0)), sk(gridSize(ni, nj, 1)),
      size(gridSize(ni, nj, nk)), name(std::move(nameValue)), data(std::move(values)) {
    data.resize(static_cast<std::size_t>(size));
}

template class zArray<double>;

} // namespace velmora
