#include "frame_stream.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <vector>

#include "about.h"

namespace velmora {

namespace {

/// So many numbers of a list of points go at once.
constexpr std::size_t pointsAtOnce = 8192;
/// No list of a frame is longer: what claims to be is none.
constexpr std::uint64_t longestList = std::uint64_t{1} << 32U;

class Writer {
public:
    explicit Writer(const TakeBytes& take) : take_(take) {}

    bool isWhole() const { return whole_; }

    template <class Value>
    void put(const Value& value) {
        static_assert(std::is_trivially_copyable_v<Value>);
        bytes(reinterpret_cast<const char*>(&value), sizeof(Value)); // read again by the same build
    }
    template <class Value>
    void put(const std::vector<Value>& values) {
        put(static_cast<std::uint64_t>(values.size()));
        for (const Value& value : values) {
            put(value);
        }
    }
    void put(const std::string& text) {
        put(static_cast<std::uint64_t>(text.size()));
        bytes(text.data(), text.size());
    }
    void put(const zVec<double>& point) { put(std::array{point.x, point.y, point.z}); }
    void put(const std::vector<zVec<double>>& points) {
        put(static_cast<std::uint64_t>(points.size()));
        std::vector<std::array<double, 3>> some;
        for (std::size_t first = 0; first < points.size(); first += pointsAtOnce) {
            some.clear();
            const std::size_t end = std::min(points.size(), first + pointsAtOnce);
            for (std::size_t i = first; i < end; ++i) {
                some.push_back({points[i].x, points[i].y, points[i].z});
            }
            bytes(reinterpret_cast<const char*>(some.data()), some.size() * sizeof(some.front()));
        }
    }
    void put(const DrawList& list) {
        put(list.number);
        put(list.batches);
        put(list.accents);
        put(list.vertices);
        put(list.normals);
    }
    void put(const Overlay& overlay) {
        put(overlay.list);
        put(static_cast<std::uint64_t>(overlay.texts.size()));
        for (const DrawText& text : overlay.texts) {
            put(text.text);
            put(text.position);
            put(text.colour);
            put(text.plate);
        }
    }

private:
    void bytes(const char* first, std::size_t size) { whole_ = whole_ && take_(first, size); }

    const TakeBytes& take_;
    bool whole_ = true;
};

class Reader {
public:
    explicit Reader(const FillBytes& fill) : fill_(fill) {}

    bool isWhole() const { return whole_; }

    template <class Value>
    void get(Value& value) {
        static_assert(std::is_trivially_copyable_v<Value>);
        bytes(reinterpret_cast<char*>(&value), sizeof(Value));
    }
    template <class Value>
    void get(std::vector<Value>& values) {
        for (std::uint64_t left = count(); whole_ && left > 0; --left) {
            get(values.emplace_back());
        }
    }
    void get(std::string& text) {
        for (std::uint64_t left = count(); whole_ && left > 0; --left) {
            char letter = 0;
            get(letter);
            text += letter;
        }
    }
    void get(zVec<double>& point) {
        std::array<double, 3> numbers{};
        get(numbers);
        point = {numbers[0], numbers[1], numbers[2]};
    }
    void get(DrawList& list) {
        get(list.number);
        get(list.batches);
        get(list.accents);
        get(list.vertices);
        get(list.normals);
    }
    void get(Overlay& overlay) {
        get(overlay.list);
        for (std::uint64_t left = count(); whole_ && left > 0; --left) {
            DrawText& text = overlay.texts.emplace_back();
            get(text.text);
            get(text.position);
            get(text.colour);
            get(text.plate);
        }
    }

private:
    std::uint64_t count() {
        std::uint64_t number = 0;
        get(number);
        whole_ = whole_ && number <= longestList;
        return number;
    }
    void bytes(char* first, std::size_t size) { whole_ = whole_ && fill_(first, size); }

    const FillBytes& fill_;
    bool whole_ = true;
};

} // namespace

SceneFrame ReceivedFrame::scene() const {
    SceneFrame frame;
    frame.list = &list;
    frame.listRevision = 1;
    frame.filled = filled;
    frame.edges = edges;
    frame.backFilled = backFilled;
    frame.held = &held;
    frame.overlay = &overlay;
    frame.modelView = modelView;
    frame.projection = projection;
    frame.viewport = viewport;
    frame.pixelScale = pixelScale;
    return frame;
}

bool writeFrame(const SceneFrame& frame, const PictureSettings& settings, const TakeBytes& take) {
    Writer writer(take);
    writer.put(std::string(programVersion()));
    writer.put(settings);
    writer.put(*frame.list);
    writer.put(frame.held != nullptr ? *frame.held : DrawList());
    writer.put(*frame.overlay);
    for (const bool flag : {frame.filled, frame.edges, frame.backFilled}) {
        writer.put(flag);
    }
    writer.put(frame.modelView);
    writer.put(frame.projection);
    writer.put(frame.viewport);
    writer.put(frame.pixelScale);
    return writer.isWhole();
}

bool readFrame(const FillBytes& fill, ReceivedFrame& frame) {
    Reader reader(fill);
    std::string version;
    reader.get(version);
    if (!reader.isWhole() || version != programVersion()) {
        return false;
    }
    reader.get(frame.settings);
    reader.get(frame.list);
    reader.get(frame.held);
    reader.get(frame.overlay);
    for (bool* flag : {&frame.filled, &frame.edges, &frame.backFilled}) {
        reader.get(*flag);
    }
    reader.get(frame.modelView);
    reader.get(frame.projection);
    reader.get(frame.viewport);
    reader.get(frame.pixelScale);
    return reader.isWhole();
}

} // namespace velmora
