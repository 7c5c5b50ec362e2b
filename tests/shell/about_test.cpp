#include "about.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/sysinfo.h>

#include <QLabel>
#include <string>

#include "AboutBox.h"
#include "FrameRig.h"
#include "qt_text.h"

namespace velmora::test {
namespace {

TEST(About, NamesTheProgramAndTheMachinesStateInMegabytes) {
    EXPECT_THAT(aboutText(), testing::MatchesRegex("Velmora [0-9]+\\.[0-9]+\\.[0-9]+\n\nPhysical memory: [0-9]+ MB\n"
                                                   "Available memory: [0-9]+ MB\nFree disk space: [0-9]+ MB"));
}

TEST(About, ThePhysicalMemoryIsWhatTheSystemCallTells) {
    struct sysinfo state {};
    ASSERT_EQ(sysinfo(&state), 0);
    const unsigned long megabytes = (state.totalram * state.mem_unit) >> 20U;
    EXPECT_THAT(aboutText(), testing::HasSubstr("Physical memory: " + std::to_string(megabytes) + " MB"));
}

TEST(AboutBox, TellsWhatTheProgramRunsOnAndItsLicence) {
    const auto partsOf = [](const AboutBox& box) {
        return plainBytes(box.findChild<QLabel*>(QStringLiteral("aboutParts"))->text());
    };
    const AboutBox box(QStringLiteral("4.5 (Compatibility Profile)"));
    EXPECT_EQ(partsOf(box), std::string("Qt ") + qVersion() +
                                "\nOpenGL 4.5 (Compatibility Profile)\n\nMIT licence, without any warranty");
    EXPECT_THAT(plainBytes(box.findChild<QLabel*>(QStringLiteral("aboutText"))->text()),
                testing::HasSubstr("Available memory: "));
    EXPECT_THAT(partsOf(AboutBox(QString())), testing::HasSubstr("\nOpenGL is not there\n"));
}

TEST(AboutBox, TheFrameHasNoOpenGlOffScreen) {
    FrameRig rig;
    EXPECT_EQ(rig.frame.openGlVersion(), QString());
}

} // namespace
} // namespace velmora::test
