#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "Act.h"
#include "DocumentView.h"
#include "OpenGLView.h"
#include "draw_lists.h"
#include "measure.h"
#include "model_picks.h"
#include "value_colours.h"

namespace velmora {

class VelmoraDoc;
struct ViewCommand;

/// The view of the document: camera, mouse, picking, and the picture as data. It knows no toolkit and makes no
/// OpenGL call; the surface carries both out.
class VelmoraView : public OpenGLView, public DocumentView {
public:
    /// The document and the surface must outlive the view, which attaches itself to the document.
    VelmoraView(VelmoraDoc& document, ViewSurface& surface);
    ~VelmoraView() override;

    // ---- State ----------------------------------------------------------------------------------

    int mouseMode = ModeNone;
    int projectionMode = 0;  ///< 0 perspective, 1 orthographic
    zVec<double> viewAngles; ///< degrees, refreshed by every paint
    bool viewAlongX = false; ///< the angles are exactly a principal view
    bool viewAlongY = false;
    bool viewAlongZ = false;
    Matrix4 modelRotation = identityMatrix();
    zVec<double> modelOffset;
    zVec<double> modelScale{1.0, 1.0, 1.0};
    zVec<double> defaultOffset;
    double fieldOfView = 20.0; ///< stored only; the projection does not read it
    double aspectRatio = 1.0;
    double nearPlane = 0.1;
    double farPlane = 10.0;
    double zoomFactor = 1.0;
    double viewCentreX = 0.0; ///< pixel position that the projection window is centred on
    double viewCentreY = 0.0;
    Viewport viewport;
    Matrix4 modelViewMatrix = identityMatrix(); ///< the matrices in force
    Matrix4 projectionMatrix = identityMatrix();

    bool leftButtonDown = false;
    PixelPoint lastMousePos; ///< of the last accepted move or the button-down
    PixelPoint prevMousePos; ///< the one before; a spin measures from it
    std::int64_t lastMoveClock = 0;
    bool spinActive = false;
    bool spinTimerOn = false; ///< a spin was started; only a release clears it, and that one starts no new spin
    double spinAngle = 0.0;
    zVec<double> spinAxis;
    bool rubberBandShown = false;
    PixelPoint rubberStart;
    PixelPoint rubberEnd;
    int rubberStartX = 0; ///< the start once more, with y counted from the bottom
    int rubberStartY = 0;

    bool edgesShown = false;      ///< over a surface the edges of its cells
    bool backFacesFilled = false; ///< of a surface the back faces are filled too, darker

    /// Of a picture that is drawn now, in place of the window's: see pixelScale().
    std::optional<double> pictureScale;
    /// What has its size in pixels grows by it.
    double pixelScale() const { return pictureScale.value_or(surface().pixelScale()); }

    /// The picture of the model, as of the last redraw, and what was drawn beside it in the last frame.
    const DrawList& list();
    const Overlay& overlay() const { return overlay_; }
    /// The batches of the overlay that stand before the triad: legend and marks.
    std::size_t batchesBeforeTriad() const { return batchesBeforeTriad_; }
    /// What is drawn over a surface of what is held; empty over wires, which show it themselves.
    const DrawList& held() const { return held_; }
    /// What a click would take, where that is known before the click.
    const std::optional<Pick>& candidate() const { return candidate_; }

    // ---- Frame loop -----------------------------------------------------------------------------

    void OnDraw() override;
    void OnSize(int width, int height) override;
    bool RenderScene() override;
    virtual void ResetViewCentre();
    virtual void UpdateCameraLimits();
    virtual void ResetModelTransform();
    virtual void ResizeViewport(int width, int height);
    virtual void UpdateProjection();

    // ---- What the document asks -----------------------------------------------------------------

    void onGeometryChanged() override { onPictureChanged(); }
    void onPictureChanged() override;
    void onHighlightChanged() override;
    void onBoundsChanged() override;
    void setMouseMode(MouseMode mode) override;
    void forceMouseMode(MouseMode mode) override;
    void resetMouseMode() override;
    int principalPlane() const override { return viewAlongX ? 1 : viewAlongY ? 2 : viewAlongZ ? 3 : 0; }

    /// Marks a place that is pointed at elsewhere, in a plot say; none takes the mark away.
    void pointAt(const std::optional<zVec<double>>& place);

    // ---- Camera ---------------------------------------------------------------------------------

    /// Loads the model view matrix so that the model turns about `centre`.
    void ApplyModelTransform(const zVec<double>& centre);
    void SetAxisView(double angle, const zVec<double>& axis);
    /// Turns by z about Z, then y about Y, then x about X, in degrees.
    void SetEulerView(const zVec<double>& angles);

    // ---- Commands -------------------------------------------------------------------------------

    /// The rows of the view's own commands.
    static std::span<const ViewCommand> commands();
    /// True when the view's or the document's state turns a view command off.
    bool isViewCommandOff(std::string_view id) const;
    /// Of a view command that switches something: whether that is on.
    std::optional<bool> checkedState(std::string_view id) const;
    /// The mode that a command of the view sets; ModeNone for all others.
    static MouseMode mouseModeOf(std::string_view id);
    /// Runs a view command; false when the view has none of that id.
    bool runViewCommand(std::string_view id);

    // ---- Mouse and keys: pixels from the upper left ---------------------------------------------

    void OnLeftButtonDown(PixelPoint position);
    void OnMouseMove(PixelPoint position);
    void OnLeftButtonUp(PixelPoint position);
    void OnTimer();
    /// Escape ends measuring; else it is the window's.
    void OnKeyDown(ViewKey key) override;

    // ---- The same by number ---------------------------------------------------------------------

    /// What became of an act that was asked for by number.
    enum class ActResult {
        Done,
        NotArmed,      ///< no regime waits for it
        NotThere,      ///< the model has no such part
        NotLetThrough, ///< the regime takes clicks inside what is captured alone
        NoPlane,       ///< a curve is bent in a principal view alone
    };
    /// Does what a click on the part does, or one move of a drag, or its end. Where the mouse is does not matter, nor
    /// what it does in the view.
    ActResult perform(const Act& act);

    // ---- Navigation without a mode: whatever the left button does -------------------------------

    /// Zooms by `notches` of the wheel, in when they are positive; what lies under the pixel stays there.
    void OnWheel(PixelPoint position, double notches);
    /// The middle button went down: up to EndNavigation each move turns (ModeRotate), shifts (ModeShift) or zooms
    /// (ModeScale). Ignored while the left button is down.
    void BeginNavigation(MouseMode act, PixelPoint position);
    void Navigate(PixelPoint position);
    void EndNavigation();
    bool isNavigating() const { return navigation_.has_value(); }
    /// The camera has not moved for a while: the whole picture is wanted.
    void OnRest();
    /// The mouse left the view: it points at nothing.
    void OnMouseLeave();

    // ---- Picking --------------------------------------------------------------------------------

    /// The line of sight through a pixel.
    PixelLine PixelRay(double x, double y) const;
    /// Each hands the document what is nearest to the ray; false if nothing lies within its limit.
    bool PickPoint(PixelPoint position);
    bool PickSection(PixelPoint position);
    bool PickLine(PixelPoint position);
    /// The number of the first patch with a visible hit under the pixel, or -1.
    std::int32_t PickPatch(PixelPoint position);
    /// The nearest point of the drag grid becomes the place of the captured point; false if none is near.
    bool PickDragPoint(PixelPoint position);
    /// Where the pixel's ray meets the coordinate plane through the captured point becomes its place. Needs a principal
    /// view.
    void PickPlanePoint(PixelPoint position);
    /// Bends the captured section or line so that the captured point reaches `target` in the plane of the screen.
    void CorrectLineByDrag(const zVec<double>& target);

private:
    /// Where the camera stands, whatever the size of the window.
    struct CameraPose {
        Matrix4 rotation{};
        zVec<double> offset;
        double zoom = 1.0;
        double centreX = 0.5; ///< of the projection window, as a fraction of the viewport
        double centreY = 0.5;
        int projection = 0;

        friend bool operator==(const CameraPose&, const CameraPose&) = default;
    };
    /// A drag with the middle button.
    struct Navigation {
        MouseMode act = ModeRotate;
        PixelPoint last;
        zVec<double> pivot; ///< turns about it
    };
    /// What part of the plane of the window, in model units from its middle, something covers.
    struct WindowRange {
        double left = std::numeric_limits<double>::infinity();
        double right = -std::numeric_limits<double>::infinity();
        double bottom = std::numeric_limits<double>::infinity();
        double top = -std::numeric_limits<double>::infinity();
    };
    struct ScreenAxes {
        zVec<double> right;
        zVec<double> down;
        zVec<double> normal;
    };
    struct Rotation {
        double angle = 0.0;
        zVec<double> axis;
    };

    void bringListUpToDate();
    void drawWithOverlay();
    void buildOverlay();
    void buildPointed();
    void bringCoarseListUpToDate();
    bool isTooSlow() const;
    bool showsSurface() const { return model_.list.number == 2 || model_.list.number == 4; }
    void addLegend();
    void addTriad(DrawList& list);
    void addMarkerNumbers();
    /// Nothing is measured any more; what is to come is told where the mode has changed to measuring or from it.
    void beginMeasuring(bool wasMeasuring);
    void measureFrom(PixelPoint position);
    bool isMeasured() const;
    void drawMeasured(DrawList& list) const;
    void labelMeasured();
    void refreshAngles();
    void repaint() { surface().requestRepaint(); }
    void showCursor(MouseMode mode);
    void stopSpin();

    void setProjection(int mode);
    void showViewingDialog();
    void zoomOut();
    void fitKeepingRotation();
    void fitCaptured();
    void fitModel();
    template <class Visit>
    void fitPoints(Visit visit);
    void fitTo(const WindowRange& range);
    void zoomTo(double factor);

    CameraPose pose() const;
    void notePose();
    void goBack();

    ScreenAxes ScreenFrame() const;
    zVec<double> CentreVector(PixelPoint position, const zVec<double>& normal) const;
    Rotation mouseRotation(PixelPoint from, PixelPoint to) const;
    void turnBy(int dx, int dy);
    void dragCamera(PixelPoint position);
    void dragRegime(PixelPoint position);
    void pressRegime(PixelPoint position);
    void finishZoom(PixelPoint position);
    bool stillClick(PixelPoint position) const;

    void pressPatchCapture(const Pick& pick);
    void pressPatchRemoval(const Pick& pick);
    void bendToPick();
    ActResult capturePoint(const Act& act);
    ActResult captureCurve(const Act& act);
    ActResult capturePatch(const Act& act);
    ActResult clickBeside(const Act& act);
    ActResult dragTo(const zVec<double>& place);
    ActResult endDrag();
    void abandonPress();
    PixelLine rayThrough(PixelPoint position) const;
    Pick patchUnder(PixelPoint position, Pick::Target target);
    bool take(const Pick& pick);
    Sight sight() const;
    void pointUnder(PixelPoint position);
    void showCandidate(const std::optional<Pick>& candidate);
    bool isMarked(const std::optional<Pick>& candidate) const;
    zVec<double> middleOfView();
    void noteMotion();
    bool takeCurve(const Pick& pick);
    void showCurvePick(MouseMode mode, const std::string& text);
    int listNumber();
    Matrix4 modelTransform(const zVec<double>& centre) const;
    double eyeDistance() const;

    VelmoraDoc& doc_;
    ModelList model_;
    CaptureColours modelColours_; ///< as of the last build
    DrawList flatList_;           ///< the model's list without accents, when it has some and was asked for
    bool flat_ = false;
    bool listDirty_ = true; ///< built when a paint shows it or someone asks: several changes cost one build
    bool highlightDirty_ = false;
    std::uint64_t listRevision_ = 0;
    DrawList coarse_; ///< of the list of coarseOf_
    std::uint64_t coarseRevision_ = 0;
    std::uint64_t coarseOf_ = 0;
    bool moving_ = false; ///< the camera, until it rests
    DrawList held_;
    std::uint64_t heldRevision_ = 0;
    DrawList pointed_;
    std::optional<Pick> candidate_;
    std::uint64_t candidateRevision_ = 0; ///< of the geometry that it was found in
    std::string candidateText_;
    Overlay overlay_;
    std::size_t batchesBeforeTriad_ = 0;
    std::optional<ColouredValues> coloured_; ///< the values that the model's list shows as colours
    std::optional<zVec<double>> pointedAt_;
    std::vector<MeasuredPlace> measured_; ///< three at most
    std::uint64_t measuredRevision_ = 0;  ///< of the geometry that they were found in
    ModelIndex index_;
    std::optional<std::uint64_t> gridRevision_; ///< of the geometry that was looked at
    bool isGrid_ = false;                       ///< the surface can be drawn
    bool drawing_ = false;                      ///< a scene is being drawn: a further paint is refused
    MouseMode shownCursor_ = ModeNone;
    MouseMode previousCursor_ = ModeNone;
    std::optional<Navigation> navigation_;
    std::int64_t lastWheelClock_ = 0;
    std::vector<CameraPose> poses_; ///< where the camera stood before, the newest last
    zVec<double> posesCentre_;      ///< the model's centre and radius that they belong to
    double posesRadius_ = 0.0;
};

} // namespace velmora
