// The window tests need one QApplication for the whole run; they draw on Qt's
// offscreen platform unless a display is asked for. Whoever starts them, with
// ctest or by hand, their settings go to a folder of their own that goes with
// the run: never the operator's own settings file.
#include <gtest/gtest.h>
#include <QApplication>
#include <QTemporaryDir>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir config;
    if (!config.isValid()) return 1;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
