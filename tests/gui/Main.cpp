// The interface's tests run without a display, on the software renderer.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QQuickWindow>

int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argumentCount, arguments);
    QAccessible::setActive(true);
    return RUN_ALL_TESTS();
}
