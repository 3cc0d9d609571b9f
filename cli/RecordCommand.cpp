#include <algorithm>
#include <cstdio>
#include <memory>

#include "Commands.h"
#include "datalog/Recorder.h"
#include "datalog/RecordingExport.h"
#include "platform/Platform.h"
#include "support/WholeFile.h"

namespace itorvctl {

using namespace torv;

namespace {

std::string writeTo(const std::string& output, const RecordingReader& recording,
                    RecordingFormat::Kind format) {
    if (output.empty()) {
        auto error = exportRecording(recording, format, [](std::string_view piece) {
            return std::fwrite(piece.data(), 1, piece.size(), stdout) == piece.size();
        });
        return std::fflush(stdout) == 0 ? error : "the output could not be written";
    }
    WholeFile file{output};
    auto error =
        exportRecording(recording, format, [&file](std::string_view piece) { return file.write(piece); });
    if (error.empty() && !file.finish()) error = output + " can't be written";
    return error;
}

}  // namespace

int record(Handset& handset, const Arguments& arguments) {
    const std::filesystem::path file{arguments.words[0]};
    if (!handset.connect()) return notConnected(handset);
    Recorder recorder{handset.sharedFeeder()};
    auto& loop = Platform::current().runLoop();
    bool failed = false;
    const auto fail = [&](const std::string& why) {
        complain(why);
        failed = true;
        loop.quit();
    };
    recorder.setFailed(fail);
    if (const auto why = recorder.begin(file, handset.vehicle(), file.stem().string())) {
        complain(*why);
        return badArguments;
    }
    handset.run();
    const auto values = recorder.valueCount();
    const auto length = recorder.length();
    recorder.end();
    if (failed) return noAnswer;
    if (arguments.json) {
        printObject({{"file", file.string()},
                     {"seconds", Number::fromInteger(length.count())},
                     {"values", Number::fromInteger(static_cast<std::int64_t>(values))}});
    } else {
        std::printf("%s: %s, %zu values\n", file.c_str(), lengthText(length).c_str(), values);
    }
    return success;
}

int exportRecording(const Arguments& arguments) {
    std::string error;
    const auto recording = RecordingReader::open(arguments.words[0], error);
    if (!recording) {
        complain(error);
        return badArguments;
    }
    std::error_code none;
    if (arguments.words.size() > 1 &&
        std::filesystem::equivalent(arguments.words[0], arguments.words[1], none)) {
        complain(arguments.words[1] + " is the recording itself");
        return badArguments;
    }
    const auto format = std::ranges::find(recordingFormats, arguments.format, &RecordingFormat::name)->kind;
    error = writeTo(arguments.words.size() > 1 ? arguments.words[1] : "", *recording, format);
    if (error.empty()) return success;
    complain(error);
    return noAnswer;
}

}  // namespace itorvctl
