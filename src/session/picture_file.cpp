#include "picture_file.h"

#include <algorithm>
#include <array>
#include <optional>

#include "DialogValues.h"
#include "DocumentState.h"
#include "Session.h"
#include "UserInterface.h"
#include "messages.h"
#include "path_names.h"
#include "script_words.h"
#include "show_dialog.h"

namespace velmora {

PictureResult writePicture(Session& session, const std::filesystem::path& file, const PictureSettings& settings,
                           const DrawPixels& drawPixels) {
    const std::string extension = extensionOf(file);
    const bool lines = extension == "svg";
    if (!lines && (extension != "png" || !drawPixels)) {
        return PictureResult::UnknownType;
    }
    if (session.holdsModel(file)) {
        return PictureResult::HoldsModel;
    }
    bool written = false;
    withPicture(session.view(), session.state(), settings, [&](const SceneFrame& frame) {
        written = lines ? writeText(file, svgOf(frame, settings)) : drawPixels(frame, settings, file);
    });
    if (!written) {
        return PictureResult::Failed;
    }
    tellWritten(session.ui(), file, extension);
    return PictureResult::Written;
}

namespace {

/// The dialog comes up with the size of the view; none when it was cancelled.
std::optional<PictureSettings> askedSettings(Session& session) {
    CPicture& values = session.state().dialogs->picture;
    const Viewport& view = session.view().viewport;
    values.width = std::clamp(view.width, 1, largestPictureSide);
    values.height = std::clamp(view.height, 1, largestPictureSide);
    if (!showDialog(session.ui(), values)) {
        return std::nullopt;
    }
    constexpr std::array grounds = {PictureGround::Black, PictureGround::White, PictureGround::Clear};
    return PictureSettings{values.width, values.height, grounds.at(static_cast<std::size_t>(values.ground) - 1),
                           values.triad};
}

} // namespace

void savePicture(Session& session, const DrawPixels& drawPixels) {
    const auto settings = askedSettings(session);
    if (!settings) {
        return;
    }
    const DocumentState& document = session.state();
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.types = {{"svg", "Lines"}};
    if (drawPixels) {
        request.types.insert(request.types.begin(), {"png", "Picture"});
    }
    request.proposed = document.modelFile.chosenPath;
    request.proposed.replace_extension(request.types.front().extension);
    request.command = "file.picture";
    const auto paths = session.ui().chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    switch (writePicture(session, paths.front(), *settings, drawPixels)) {
    case PictureResult::Written:
        break;
    case PictureResult::UnknownType:
        session.ui().showMessage(message::fileTypeNotSupported);
        break;
    case PictureResult::HoldsModel:
        session.ui().showMessage(message::holdsModel(paths.front().filename().string()));
        break;
    case PictureResult::Failed:
        session.ui().showMessage(message::cannotSave);
        break;
    }
}

} // namespace velmora
