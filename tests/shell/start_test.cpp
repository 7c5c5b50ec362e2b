#include <gtest/gtest.h>

#include <QProcess>
#include <QProcessEnvironment>

#include "FlatDesk.h"
#include "Person.h"
#include "qt_text.h"

// The program as it is started from a terminal.

namespace velmora::test {
namespace {

TEST(Start, WithoutADisplayOneLineSaysSo) {
    const FlatDesk desk;
    for (const char* platform : {"", "xcb", "none-such"}) {
        SCOPED_TRACE(platform);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE"}) {
            environment.remove(QString::fromLatin1(name));
        }
        if (*platform != '\0') {
            environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QString::fromLatin1(platform));
        }
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(VELMORA_WINDOW), {qtPath(desk.model)});
        ASSERT_TRUE(program.waitForFinished());
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 1);
        EXPECT_EQ(program.readAllStandardOutput(), QByteArray());
        EXPECT_EQ(program.readAllStandardError().toStdString(),
                  "velmora: no display was found to open a window on; velmora-batch needs none\n");
    }
}

} // namespace
} // namespace velmora::test
