#pragma once

namespace torv {

/// Ties every listening socket of this process to the loopback interface. Qt's VNC platform listens on all
/// interfaces and asks for no password. False when a socket could not be tied, or none listens. Any thread.
[[nodiscard]] bool keepListenersOnLoopback();

}  // namespace torv
