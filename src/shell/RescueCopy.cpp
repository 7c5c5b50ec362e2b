#include "RescueCopy.h"

#include <QApplication>
#include <chrono>
#include <exception>
#include <utility>

#include "VelmoraDoc.h"

namespace velmora {

namespace {

constexpr int lookEvery = 1000; // ms
/// A model that changes all the time is written at this look at the latest.
constexpr int mostLooks = 4;

} // namespace

RescueCopy::RescueCopy(VelmoraDoc& document, std::filesystem::path root, QObject* parent)
    : QObject(parent), doc_(document), root_(std::move(root)) {
    connect(&timer_, &QTimer::timeout, this, &RescueCopy::look);
    timer_.start(lookEvery);
}

RescueCopy::~RescueCopy() {
    if (writing_.valid()) {
        writing_.wait();
    }
    if (!kept_) {
        discard();
    }
}

bool RescueCopy::isWriting() const {
    return writing_.valid() && writing_.wait_for(std::chrono::seconds(0)) != std::future_status::ready;
}

void RescueCopy::look() {
    if (isWriting()) {
        return;
    }
    finishWriting();
    if (!doc_.worthRescuing()) {
        discard();
        return;
    }
    const std::uint64_t revision = doc_.geometryRevision();
    // In the middle of a command, which waits for an answer, the model is neither old nor new.
    if (written_ == revision || failedAt_ == revision || QApplication::activeModalWidget() != nullptr) {
        return;
    }
    ++looks_;
    if (std::exchange(seen_, revision) != revision && looks_ < mostLooks) {
        return;
    }
    looks_ = 0;
    try {
        if (!madeFolder()) {
            tellFailure();
            return;
        }
        writing_ = std::async(std::launch::async,
                              [bytes = doc_.rescueBytes(), folder = &*folder_] { return folder->write(bytes); });
        written_ = revision;
    } catch (const std::exception&) {
        tellFailure(); // no memory for the copy: the model itself is worth more
    }
}

bool RescueCopy::writeNow() {
    if (writing_.valid()) {
        writing_.wait();
        finishWriting();
    }
    if (written_ == doc_.geometryRevision()) {
        return true;
    }
    try {
        std::string bytes;
        doc_.withoutTrial([&] { bytes = doc_.rescueBytes(); });
        if (madeFolder() && folder_->write(bytes)) {
            written_ = doc_.geometryRevision();
            return true;
        }
    } catch (const std::exception&) {
        return false;
    }
    return false;
}

void RescueCopy::adopt(RescueFolder folder) {
    discard();
    folder_.emplace(std::move(folder));
    written_ = doc_.geometryRevision();
}

bool RescueCopy::madeFolder() {
    if (!folder_) {
        if (auto made = RescueFolder::make(root_)) {
            folder_.emplace(std::move(*made));
        }
    }
    return folder_.has_value();
}

void RescueCopy::finishWriting() {
    if (!writing_.valid()) {
        return;
    }
    if (writing_.get()) {
        failureTold_ = false;
    } else {
        // Somebody may have cleared the folder away: the next look makes a new one.
        discard();
        tellFailure();
    }
}

void RescueCopy::discard() {
    if (folder_) {
        folder_->remove();
        folder_.reset();
    }
    written_.reset();
    seen_.reset();
    looks_ = 0;
}

void RescueCopy::tellFailure() {
    failedAt_ = doc_.geometryRevision(); // tried again with the next change
    if (!std::exchange(failureTold_, true)) {
        doc_.ShowStatus("No rescue copy can be kept in " + root_.string());
    }
}

} // namespace velmora
