#pragma once

#include <QGuiApplication>
#include <memory>

namespace torv {

/// The application on the display that the environment or `-platform` names, and Qt's messages in the log
/// from then on. Main thread, once.
///
/// Qt ends the process with an abort when there is no display that it can use. Here that is one line on the
/// terminal and null, or the exit code 2 at once where Qt can't be stopped otherwise.
[[nodiscard]] std::unique_ptr<QGuiApplication> openDisplay(int& argc, char** argv);

/// Before the first window: lets the processor draw it where OpenGL can't, or where that is asked for. Says
/// in the log when it had to. Main thread.
void chooseRenderer(bool software);

}  // namespace torv
