#pragma once

namespace velmora {

/// A point or a vector of space in model units; a default one is the origin.
template <class T>
class zVec final {
public:
    T x{};
    T y{};
    T z{};

    zVec() = default;
    zVec(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}
    zVec(const zVec&) = default;
    zVec& operator=(const zVec&) = default;
    virtual ~zVec() = default;

    /// Exact equality of the three coordinates.
    friend bool operator==(const zVec& a, const zVec& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
};

/// Component-wise sum.
template <class T>
zVec<T> operator+(const zVec<T>& a, const zVec<T>& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

/// Component-wise difference.
template <class T>
zVec<T> operator-(const zVec<T>& a, const zVec<T>& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

/// Every component times `factor`.
template <class T>
zVec<T> operator*(const zVec<T>& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}

/// Cross product a x b.
template <class T>
zVec<T> cross(const zVec<T>& a, const zVec<T>& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Dot product a . b.
template <class T>
T dot(const zVec<T>& a, const zVec<T>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

} // namespace velmora
