#pragma once

namespace velmora {

/// A finished picture with its depth, kept in the context's memory, so that what is drawn over it costs nothing of it.
/// Every operation needs the context to be current.
class GlPicture {
public:
    GlPicture() = default;
    GlPicture(const GlPicture&) = delete;
    GlPicture& operator=(const GlPicture&) = delete;
    /// The context may be gone by now: release() comes first, this frees nothing of it.
    ~GlPicture() = default;

    /// Room for a picture of that size with so many samples a pixel. False where the context keeps none; what was kept
    /// stays only while size and samples do.
    bool prepare(int width, int height, int samples);
    /// Draws go into the picture from here on.
    void begin() const;
    /// Draws go into `target` again, which shows the picture, its depth with it. False when it could not take it: it
    /// has to be drawn there.
    bool showOn(unsigned target);
    void release();

private:
    bool make(int width, int height, int samples);

    unsigned frame_ = 0; ///< names in the context; 0: not made
    unsigned buffers_[2] = {0, 0};
    int width_ = 0;
    int height_ = 0;
    int samples_ = 0;
    bool refused_ = false; ///< the context cannot do it
};

} // namespace velmora
