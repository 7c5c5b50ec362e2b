#include <QFile>
#include <QGuiApplication>
#include <QSaveFile>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "OffscreenPicture.h"
#include "frame_stream.h"
#include "pixel_image.h"

// velmora-picture FILE: draws the frame that comes on the standard input, and needs no display for it.
// velmora-picture --try: tells whether that can be done here.

namespace {

constexpr int failed = 1;

/// The frame on the standard input as a picture in the file.
bool drawTo(const QString& path) {
    using namespace velmora;
    ReceivedFrame received;
    const FillBytes fill = [](char* room, std::size_t size) { return std::fread(room, 1, size, stdin) == size; };
    if (!readFrame(fill, received)) {
        return false;
    }
    const QImage image = pixelImage(received.scene(), received.settings);
    QSaveFile file(path);
    return !image.isNull() && file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.commit();
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow on is one that cannot be written
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const velmora::OffscreenContext context;
    if (argc != 2 || !context.isThere()) {
        return failed;
    }
    return std::strcmp(argv[1], "--try") == 0 || drawTo(QFile::decodeName(argv[1])) ? 0 : failed;
}
