#include "TVRCallbackDispatcher_p.h"

#include <QTimer>

#include <deque>

namespace {

struct ThreadState
{
    int waits = 0;
    bool flushScheduled = false;
    std::deque<std::function<void()>> held;
};

thread_local ThreadState state;

void flush()
{
    state.flushScheduled = false;
    // A callback may itself start a keychain call; whatever arrives meanwhile queues
    // behind the callbacks still held, and the wait's end schedules the next flush.
    while (state.waits == 0 && !state.held.empty()) {
        std::function<void()> callback = std::move(state.held.front());
        state.held.pop_front();
        callback();
    }
}

void scheduleFlush()
{
    if (state.flushScheduled || state.held.empty())
        return;
    state.flushScheduled = true;
    QTimer::singleShot(0, &flush);
}

} // namespace

void TVRCallbackDispatcher::deliver(std::function<void()> callback)
{
    if (state.waits == 0 && state.held.empty()) {
        callback();
        return;
    }
    state.held.push_back(std::move(callback));
    if (state.waits == 0)
        scheduleFlush();
}

void TVRCallbackDispatcher::post(QObject *context, std::function<void()> callback)
{
    QMetaObject::invokeMethod(
        context, [callback = std::move(callback)]() mutable { deliver(std::move(callback)); },
        Qt::QueuedConnection);
}

TVRCallbackDispatcher::SynchronousWait::SynchronousWait()
{
    ++state.waits;
}

TVRCallbackDispatcher::SynchronousWait::~SynchronousWait()
{
    if (--state.waits == 0)
        scheduleFlush();
}
