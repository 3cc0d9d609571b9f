#include "options/CommonOptions.h"

#include <net/if.h>

#include "vehicles/VehicleDataSource.h"

namespace torv {

void CommonOptions::addTo(QCommandLineParser& parser, const QString& profileHelp) {
    parser.addOptions({
        {"module", "Connect to this module, wherever the network says it is.", "HOST:PORT"},
        {"interface", "The network interface whose address tells which module to look for (en0).", "NAME",
         "en0"},
        {"profile", profileHelp, "FILE"},
        {"update-server", "Where vehicle profiles are updated from.", "URL"},
        {"capture", "Keep what goes over the link in a new file, for \"itorvctl frames\" or Wireshark.",
         "FILE"},
    });
}

std::optional<std::string> CommonOptions::read(const QCommandLineParser& parser, const URLLoader& loader) {
    connection.interface = parser.value("interface").toStdString();
    // The default interface need not exist: most handsets have none of that name.
    if (parser.isSet("interface") && ::if_nametoindex(connection.interface.c_str()) == 0)
        return "there is no network interface \"" + connection.interface + "\"";
    profile = parser.value("profile").toStdString();
    capture = parser.value("capture").toStdString();
    if (parser.isSet("module")) {
        connection.module = endpointFromText(parser.value("module").toStdString());
        if (!connection.module)
            return "--module takes an address and a port from 1 to 65535, as in 127.0.0.1:2000";
    }
    if (parser.isSet("update-server") &&
        !VehicleDataSource::setUpdateServer(parser.value("update-server").toStdString(), loader))
        return "--update-server takes an address as in http://example.com";
    return std::nullopt;
}

}  // namespace torv
