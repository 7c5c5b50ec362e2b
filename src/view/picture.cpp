#include "picture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "DocumentState.h"
#include "VelmoraView.h"

namespace velmora {

namespace {

/// The size and the camera of a view, put back at the end.
class KeptCamera {
public:
    explicit KeptCamera(VelmoraView& view)
        : view_(view), viewport_(view.viewport), aspectRatio_(view.aspectRatio), centreX_(view.viewCentreX),
          centreY_(view.viewCentreY), modelView_(view.modelViewMatrix), projection_(view.projectionMatrix),
          spins_(view.spinActive), scale_(view.pictureScale) {
        view.spinActive = false;
    }
    KeptCamera(const KeptCamera&) = delete;
    KeptCamera& operator=(const KeptCamera&) = delete;
    ~KeptCamera() {
        view_.viewport = viewport_;
        view_.aspectRatio = aspectRatio_;
        view_.viewCentreX = centreX_;
        view_.viewCentreY = centreY_;
        view_.modelViewMatrix = modelView_;
        view_.projectionMatrix = projection_;
        view_.spinActive = spins_;
        view_.pictureScale = scale_;
    }

private:
    VelmoraView& view_;
    Viewport viewport_;
    double aspectRatio_;
    double centreX_;
    double centreY_;
    Matrix4 modelView_;
    Matrix4 projection_;
    bool spins_;
    std::optional<double> scale_;
};

/// A place before the division by w, in which the visible space is a box.
struct ClipPoint {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;
};

/// How far the place is inside each side of the box.
std::array<double, 6> insideOf(const ClipPoint& p) {
    return {p.w + p.x, p.w - p.x, p.w + p.y, p.w - p.y, p.w + p.z, p.w - p.z};
}

ClipPoint between(const ClipPoint& a, const ClipPoint& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.z + (b.z - a.z) * t, a.w + (b.w - a.w) * t};
}

/// Cuts the segment to the box; false when nothing of it is inside.
bool clip(ClipPoint& a, ClipPoint& b) {
    const auto insideA = insideOf(a);
    const auto insideB = insideOf(b);
    double first = 0.0;
    double last = 1.0;
    for (std::size_t side = 0; side < insideA.size(); ++side) {
        if (insideA[side] < 0.0 && insideB[side] < 0.0) {
            return false;
        }
        const double t = insideA[side] / (insideA[side] - insideB[side]);
        if (insideA[side] < 0.0) {
            first = std::max(first, t);
        } else if (insideB[side] < 0.0) {
            last = std::min(last, t);
        }
    }
    if (!(first <= last)) {
        return false;
    }
    const ClipPoint begin = a;
    const ClipPoint end = b;
    a = between(begin, end, first);
    b = between(begin, end, last);
    return a.w > 0.0 && b.w > 0.0;
}

/// Two digits behind the point, and none that say nothing.
std::string pixels(double value) {
    std::array<char, 32> buffer{};
    auto* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 2).ptr;
    std::string text(buffer.data(), end);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string colourText(const Colour& colour) {
    std::string text = "#";
    for (std::size_t i = 0; i < 3; ++i) {
        constexpr const char* digits = "0123456789abcdef";
        constexpr double most = 255.0;
        const auto part = static_cast<std::size_t>(std::lround(std::clamp(colour.at(i), 0.0F, 1.0F) * most));
        text += digits[part / 16];
        text += digits[part % 16];
    }
    return text;
}

constexpr double textHeight = 12.0;

class SvgWriter {
public:
    SvgWriter(const SceneFrame& frame, const PictureSettings& settings)
        : settings_(settings), toClip_(frame.projection * frame.modelView), scale_(frame.pixelScale) {
        const std::string size =
            "width=\"" + std::to_string(settings.width) + "\" height=\"" + std::to_string(settings.height) + "\"";
        text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" " + size + ">\n";
        if (settings.ground != PictureGround::Clear) {
            text_ += "<rect " + size + " fill=\"" + (settings.ground == PictureGround::White ? "#ffffff" : "#000000") +
                     "\"/>\n";
        }
    }

    void addList(const DrawList& list) {
        for (const DrawBatch& batch : list.batches) {
            addBatch(list, batch);
        }
    }

    void addText(const DrawText& text) {
        const ClipPoint at = clipPoint(text.position);
        const auto inside = insideOf(at);
        if (std::any_of(inside.begin(), inside.end(), [](double side) { return side < 0.0; }) || !(at.w > 0.0)) {
            return;
        }
        std::string words;
        for (const char letter : text.text) {
            words += letter == '<' ? "&lt;" : letter == '&' ? "&amp;" : std::string(1, letter);
        }
        const bool onPlate = text.plate != TextPlate::Side::None;
        const double down = text.plate == TextPlate::Side::Below ? TextPlate::off + textHeight : -TextPlate::off;
        const double x = xOf(at) + (onPlate ? TextPlate::right * scale_ : 0.0);
        const double y = yOf(at) + (onPlate ? down * scale_ : 0.0);
        const std::string place = "<text x=\"" + pixels(x) + "\" y=\"" + pixels(y) + "\" fill=\"";
        const std::string end = " font-size=\"" + pixels(textHeight * scale_) + "\">" + words + "</text>\n";
        if (onPlate) {
            // How wide the text will be is the reader's to know: in place of a plate its letters are drawn thick.
            const std::string under = colourText(TextPlate::colour);
            text_ += place + under + "\" stroke=\"" + under + "\" stroke-width=\"" +
                     pixels(2.0 * TextPlate::border * scale_) + "\" stroke-linejoin=\"round\"" + end;
        }
        text_ += place + colour(text.colour) + "\"" + end;
    }

    std::string finish() { return text_ + "</svg>\n"; }

private:
    ClipPoint clipPoint(const zVec<double>& p) const {
        const auto row = [&](std::size_t i) {
            return toClip_[i] * p.x + toClip_[i + 4] * p.y + toClip_[i + 8] * p.z + toClip_[i + 12];
        };
        return {row(0), row(1), row(2), row(3)};
    }
    double xOf(const ClipPoint& p) const { return (p.x / p.w + 1.0) * 0.5 * settings_.width; }
    double yOf(const ClipPoint& p) const { return (1.0 - p.y / p.w) * 0.5 * settings_.height; }
    std::string colour(const Colour& colour) const { return colourText(onGround(colour, settings_.ground)); }

    void addBatch(const DrawList& list, const DrawBatch& batch) {
        const auto at = [&](std::size_t i) -> const zVec<double>& { return list.vertices[batch.firstVertex + i]; };
        path_.clear();
        switch (batch.primitive) {
        case Primitive::Points:
            for (std::size_t i = 0; i < batch.vertexCount; ++i) {
                addPoint(at(i), scale_ * (batch.framing ? batch.pointSize - batch.lineWidth : batch.pointSize));
            }
            break;
        case Primitive::LineStrip:
            for (std::size_t i = 1; i < batch.vertexCount; ++i) {
                addLine(at(i - 1), at(i));
            }
            break;
        case Primitive::Lines:
            for (std::size_t i = 1; i < batch.vertexCount; i += 2) {
                addLine(at(i - 1), at(i));
            }
            break;
        case Primitive::Triangles:
            for (std::size_t i = 2; i < batch.vertexCount; i += 3) {
                addLine(at(i - 2), at(i - 1));
                addLine(at(i - 1), at(i));
                addLine(at(i), at(i - 2));
            }
            break;
        case Primitive::QuadStrip:
            for (std::size_t i = 1; i < batch.vertexCount; i += 2) {
                addLine(at(i - 1), at(i));
                if (i + 2 < batch.vertexCount) {
                    addLine(at(i - 1), at(i + 1));
                    addLine(at(i), at(i + 2));
                }
            }
            break;
        }
        if (!path_.empty()) {
            const bool filled = batch.primitive == Primitive::Points && !batch.framing;
            text_ += "<path d=\"" + path_ + "\" " + (filled ? "fill" : "fill=\"none\" stroke") + "=\"" +
                     colour(batch.colour) +
                     (filled ? "\"/>\n" : "\" stroke-width=\"" + pixels(scale_ * batch.lineWidth) + "\"/>\n");
        }
    }

    void addLine(const zVec<double>& from, const zVec<double>& to) {
        ClipPoint a = clipPoint(from);
        ClipPoint b = clipPoint(to);
        if (clip(a, b)) {
            path_ += 'M' + pixels(xOf(a)) + ' ' + pixels(yOf(a)) + 'L' + pixels(xOf(b)) + ' ' + pixels(yOf(b));
        }
    }

    /// A square of that many pixels.
    void addPoint(const zVec<double>& point, double size) {
        ClipPoint a = clipPoint(point);
        ClipPoint b = a;
        if (clip(a, b)) {
            path_ += 'M' + pixels(xOf(a) - 0.5 * size) + ' ' + pixels(yOf(a) - 0.5 * size) + 'h' + pixels(size) + 'v' +
                     pixels(size) + 'h' + pixels(-size) + 'z';
        }
    }

    const PictureSettings& settings_;
    Matrix4 toClip_;
    double scale_;
    std::string text_;
    std::string path_;
};

/// The overlay with those of its batches alone that stand before the triad.
Overlay withoutTriad(const Overlay& overlay, std::size_t batchesBefore) {
    Overlay kept = overlay;
    kept.list.batches.resize(std::min(kept.list.batches.size(), batchesBefore));
    return kept;
}

} // namespace

double pixelScaleOf(const PictureSettings& settings) {
    constexpr double sideOfOne = 900.0;
    return std::max(1.0, std::round(std::min(settings.width, settings.height) / sideOfOne));
}

void withPicture(VelmoraView& view, const DocumentState& document, const PictureSettings& settings,
                 const std::function<void(const SceneFrame&)>& draw) {
    view.pointAt(std::nullopt);
    {
        const KeptCamera camera(view);
        view.pictureScale = pixelScaleOf(settings);
        view.OnSize(settings.width, settings.height);
        view.RenderScene();
        const Overlay overlay =
            settings.triad ? view.overlay() : withoutTriad(view.overlay(), view.batchesBeforeTriad());
        const DrawList nothing;
        SceneFrame frame;
        frame.list = document.holdsNothing() ? &nothing : &view.list();
        frame.filled = document.surfaceMode;
        frame.edges = view.edgesShown;
        frame.backFilled = view.backFacesFilled;
        frame.held = document.holdsNothing() ? &nothing : &view.held();
        frame.overlay = &overlay;
        frame.modelView = view.modelViewMatrix;
        frame.projection = view.projectionMatrix;
        frame.viewport = view.viewport;
        frame.pixelScale = view.pixelScale();
        draw(frame);
    }
    view.RenderScene(); // what stands beside the model has its size in pixels
}

Colour onGround(const Colour& colour, PictureGround ground) {
    const bool white = colour[0] >= 1.0F && colour[1] >= 1.0F && colour[2] >= 1.0F;
    return white && ground == PictureGround::White ? Colour{0.0F, 0.0F, 0.0F, colour[3]} : colour;
}

DrawList onGround(DrawList list, PictureGround ground) {
    for (DrawBatch& batch : list.batches) {
        batch.colour = onGround(batch.colour, ground);
    }
    for (Accent& accent : list.accents) {
        accent.colour = onGround(accent.colour, ground);
    }
    return list;
}

Overlay onGround(Overlay overlay, PictureGround ground) {
    overlay.list = onGround(std::move(overlay.list), ground);
    for (DrawText& text : overlay.texts) {
        text.colour = onGround(text.colour, ground);
    }
    return overlay;
}

Colour colourOf(PictureGround ground) {
    const float light = ground == PictureGround::White ? 1.0F : 0.0F;
    return {light, light, light, ground == PictureGround::Clear ? 0.0F : 1.0F};
}

std::string svgOf(const SceneFrame& frame, const PictureSettings& settings) {
    SvgWriter writer(frame, settings);
    writer.addList(*frame.list);
    if (frame.held != nullptr) {
        writer.addList(*frame.held);
    }
    writer.addList(frame.overlay->list);
    for (const DrawText& text : frame.overlay->texts) {
        writer.addText(text);
    }
    return writer.finish();
}

} // namespace velmora
