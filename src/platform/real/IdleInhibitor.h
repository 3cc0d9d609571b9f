#pragma once

namespace torv {

/// Asks the desktop to keep the screen on. Main thread; waits for no answer.
///
/// Through the interface org.freedesktop.ScreenSaver, for as long as this program lives: the desktop takes it
/// back when the program leaves the bus. Does nothing where there is no session bus.
void inhibitIdle();

}  // namespace torv
