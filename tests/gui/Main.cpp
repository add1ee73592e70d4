// The interface's tests run without a display, on the software renderer.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QQuickWindow>

/// Qt keeps textures of pictures until the process ends, and Qt 6.4 loses bindings that a Behavior replaced;
/// what our own code leaks is still found.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libQt6Quick\nleak:QQmlPropertyBinding::create\n";
}

int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argumentCount, arguments);
    QAccessible::setActive(true);
    return RUN_ALL_TESTS();
}
