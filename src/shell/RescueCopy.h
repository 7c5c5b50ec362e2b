#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <filesystem>
#include <future>
#include <optional>

#include "RescueFolder.h"

namespace velmora {

class VelmoraDoc;

/// Keeps a copy of a model with changes beside its file, for the case that the program ends without saving it. The model
/// is looked at once a second: a copy is written when it came to rest, and every few seconds while it does not. The
/// bytes are put together between two events, which takes some hundredths of a second for two million points; a thread
/// brings them to the disk. Saved or given up, the model needs no copy, and none is kept.
class RescueCopy : public QObject {
    Q_OBJECT

public:
    /// `document` must outlive this object. `root` as of rescueRoot().
    RescueCopy(VelmoraDoc& document, std::filesystem::path root, QObject* parent = nullptr);
    /// Removes the copy, unless it is to be kept.
    ~RescueCopy() override;

    /// What the timer does each second.
    void look();
    /// Brings the model as it is to the disk and waits for that; false when it could not be done.
    bool writeNow();
    /// The copy stays when this object goes.
    void keep() { kept_ = true; }
    /// A copy that was left is that of the model from here on.
    void adopt(RescueFolder folder);

private:
    bool madeFolder();
    bool isWriting() const;
    void finishWriting();
    void discard();
    void tellFailure();

    VelmoraDoc& doc_;
    std::filesystem::path root_;
    QTimer timer_;
    std::optional<RescueFolder> folder_;
    std::future<bool> writing_;
    std::optional<std::uint64_t> written_; ///< the geometry's revision in the copy, or on its way there
    std::optional<std::uint64_t> seen_;    ///< at the last look
    int looks_ = 0;                        ///< since the first change that is in no copy
    bool kept_ = false;
    bool failureTold_ = false;
};

} // namespace velmora
