#ifndef TVRCALLBACKDISPATCHER_P_H
#define TVRCALLBACKDISPATCHER_P_H

#include <functional>

class QObject;

/*
    Hands the kit's callbacks (request completions and everything that follows from them)
    to their receivers. Keychain calls are synchronous, but the Qt backends finish their
    work in an event loop; while such a wait runs on a thread, callbacks for that thread are
    held back and delivered in order from the thread's own event loop once the wait is over,
    so no kit callback ever runs inside a keychain call.
*/
class TVRCallbackDispatcher
{
public:
    // Runs \a callback now, or later if a synchronous wait is under way on this thread
    // or earlier callbacks are still waiting to be delivered.
    static void deliver(std::function<void()> callback);

    // Runs \a callback later from the event loop of \a context's thread, as deliver() does
    // there; not at all if \a context is destroyed first.
    static void post(QObject *context, std::function<void()> callback);

    // Marks a synchronous wait for as long as it lives.
    class SynchronousWait
    {
    public:
        SynchronousWait();
        ~SynchronousWait();
        SynchronousWait(const SynchronousWait &) = delete;
        SynchronousWait &operator=(const SynchronousWait &) = delete;
    };
};

#endif
