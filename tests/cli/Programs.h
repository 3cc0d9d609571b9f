#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <filesystem>
#include <memory>
#include <string>

#include "bench/Bench.h"

/// The programs as a person runs them.
namespace programs {

struct Result {
    int code = -1;
    std::string output;
    std::string error;
};

/// Variables as "NAME=VALUE"; with no value, there is none of the name.
inline Result run(const QString& program, const QStringList& arguments, const QString& home = {},
                  const QStringList& variables = {}) {
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& variable : variables) {
        environment.remove(variable.section('=', 0, 0));
        if (const auto value = variable.section('=', 1); !value.isEmpty())
            environment.insert(variable.section('=', 0, 0), value);
    }
    if (!home.isEmpty()) environment.insert("XDG_DATA_HOME", home);
    environment.insert("no_proxy", "*");
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationDirPath() + "/" + program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput().toStdString(), process.readAllStandardError().toStdString()};
}

class ProgramsWithModule : public testing::Test {
protected:
    ProgramsWithModule() {
        module = std::make_unique<bench::Bench>(bench::Options{
            .rate = 200, .profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json"});
        EXPECT_EQ(module->start().value_or(""), "");
        address = "127.0.0.1:" + QString::number(module->port());
    }

    std::unique_ptr<bench::Bench> module;
    QString address;
};

}  // namespace programs
