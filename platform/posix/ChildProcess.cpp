#include "platform/posix/ChildProcess.hpp"

#include "platform/posix/ChildProcessWatch.hpp"

namespace quillo::ChildProcess {
namespace {

Task<> untilEnded(Completion<Result<Outcome>>& ended) {
    static_cast<void>(co_await ended);
}

}  // namespace

Task<Result<Outcome>> run(Arguments arguments, Duration limit) {
    const Context here = co_await context();
    const OutsideWork work = here.executor->outsideWork();
    Completion<Result<Outcome>> ended(*here.executor);
    const auto watch = Watch::start(std::move(arguments), limit, ended.setter());
    if (!watch) co_return std::unexpected(watch.error());
    try {
        co_return co_await ended;
    } catch (const Cancelled&) {
        (*watch)->terminate();
    }
    co_await shielded(untilEnded(ended));
    throw Cancelled{};
}

}  // namespace quillo::ChildProcess
