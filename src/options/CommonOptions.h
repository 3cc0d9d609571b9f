#pragma once

#include <QCommandLineParser>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/URLLoader.h"
#include "session/ConnectionOptions.h"

namespace torv {

/// What `itorv` and `itorvctl` take alike: --module, --interface, --profile, --update-server and --capture.
/// Main thread.
struct CommonOptions {
    ConnectionOptions connection;
    std::filesystem::path profile;  ///< empty where none was named
    std::filesystem::path capture;  ///< likewise

    static void addTo(QCommandLineParser& parser, const QString& profileHelp);
    /// Why the parsed arguments are not in order; nothing when they are. Sets the update server, if it is an
    /// address that the loader takes: arguments are read before there is a platform.
    [[nodiscard]] std::optional<std::string> read(const QCommandLineParser& parser, const URLLoader& loader);
};

}  // namespace torv
