#include "picture_file.h"

#include "DocumentState.h"
#include "Session.h"
#include "UserInterface.h"
#include "messages.h"
#include "path_names.h"
#include "script_words.h"

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
    return written ? PictureResult::Written : PictureResult::Failed;
}

void savePicture(Session& session, const DrawPixels& drawPixels) {
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
    PictureSettings settings;
    settings.width = session.view().viewport.width;
    settings.height = session.view().viewport.height;
    switch (writePicture(session, paths.front(), settings, drawPixels)) {
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
