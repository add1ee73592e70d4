// The runtime on Qt's event loop, and what only it can show.
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include "app/QtExecutor.hpp"
#include "tests/WindowEngine/support/RuntimeSuite.hpp"

namespace quillo {

INSTANTIATE_TEST_SUITE_P(Qt, Runtime, testing::Values(&make<QtExecutor>));

namespace {

TEST(QtExecutor, RunsUnderQtsOwnLoopBetweenItsEvents) {
    QtExecutor executor;
    QEventLoop loop;
    std::string log;
    bool qtServed = false;
    std::function<void()> busy = [&] {
        if (!qtServed) executor.post([&] { busy(); });
    };
    busy();
    QMetaObject::invokeMethod(&loop, [&] { qtServed = true; }, Qt::QueuedConnection);
    Job<> job(executor, note(log, 3ms, 'a'));
    job.onDone([&] { loop.quit(); });

    loop.exec();
    EXPECT_EQ(log, "a");
    EXPECT_TRUE(qtServed);
    EXPECT_TRUE(executor.idle());
}

TEST(QtExecutor, ServesQtAfterATurnThatTookLong) {
    QtExecutor executor;
    QEventLoop loop;
    std::string log;
    for (const char turn : {'a', 'b', 'c'}) {
        executor.post([&log, &executor, turn] {
            log += turn;
            for (const TimePoint end = executor.now() + 20ms; executor.now() < end;) {
            }
        });
    }
    QTimer::singleShot(0, &loop, [&] { log += '|'; });
    executor.post([&] { loop.quit(); });
    loop.exec();
    EXPECT_LE(log.find('|'), 1U) << log;
}

TEST(QtExecutor, GoesOnInsideANestedLoop) {
    QtExecutor executor;
    QEventLoop outer, nested;
    std::string log;
    executor.post([&] {
        log += '(';
        nested.exec();
        log += ')';
        outer.quit();
    });
    executor.post([&] { log += 'a'; });  // waits in the ready queue when the nested loop begins
    executor.postAfter(1ms, [&] {
        log += 'b';
        nested.quit();
    });
    outer.exec();
    EXPECT_EQ(log, "(ab)");
}

}  // namespace
}  // namespace quillo

int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    const QCoreApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
