#pragma once

#include <QObject>
#include <QPointer>
#include <utility>

#include "platform/Platform.h"

namespace torv {

/// Every touch comes in through here: the logic runs after the handler of the look has returned, because it
/// may turn the loop inside, and an object of the look that dies under its own handler ends the process.
/// A touch on something that has gone meanwhile does nothing. Main thread.
template <class Receiver, class Action>
void queueTouch(Receiver* receiver, Action action) {
    Platform::current().runLoop().performOnMainThread(
        [guard = QPointer<Receiver>{receiver}, action = std::move(action)] {
            if (guard) action(*guard);
        });
}

}  // namespace torv
