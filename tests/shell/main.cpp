#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

static void loadPictures() {
    Q_INIT_RESOURCE(velmora);
}

int main(int argc, char** argv) {
    // The off-screen platform would take OpenGL from a display that happens to be there.
    qunsetenv("DISPLAY");
    // The user's own settings stay out of it.
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QCoreApplication::setOrganizationName(QStringLiteral("Dovra"));
    QCoreApplication::setApplicationName(QStringLiteral("Velmora"));
    const QApplication application(argc, argv);
    loadPictures();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
