// SPDX-License-Identifier: MIT
// A platform that works on real files and records what it was asked for.
#pragma once

#include <kel/file_kel.h>
#include <kel/formdataposter.h>
#include <kel/platform.h>
#include <kel/problem.h>
#include <kel/ztring.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

/// Deletes and moves files; programs, timers and forms are only recorded. Put it into place with
/// Installed<TestPlatform>.
class TestPlatform : public Platform
{
public:
    using Platform::startTimer;

    void execute(const Ztring& commandLine, bool flag1, bool flag2) override
    {
        record("execute", {commandLine.toUtf8(), toText(flag1), toText(flag2)});
    }

    void deleteFile(const Kel::File& file, bool flag) override
    {
        record("deleteFile", {toPath(file).string(), toText(flag)});
        std::error_code error;
        std::filesystem::remove(toPath(file), error);
        if (error && !flag)
            Problem::throwProblem("Failed to delete");
    }

    void moveFile(const Kel::File& from, const Kel::File& to, bool flag) override
    {
        record("moveFile", {toPath(from).string(), toPath(to).string(), toText(flag)});
        std::error_code error;
        std::filesystem::rename(toPath(from), toPath(to), error);
        if (error)
            Problem::throwProblem("Failed to move");
    }

    void startTimer(Task* task, unsigned int intervalMs) override
    {
        timerTask = task;
        record("startTimer", {std::to_string(intervalMs)});
    }

    std::string getOsName() override { return osName; }

    std::string getReleaseName() override { return releaseName; }

    void postForm(const Ztring& where, const Ztring& path, const Ztring& headerName, const Ztring& headerValue,
                  FormDataPoster& form, Ztring& response) override
    {
        record("postForm", {where.toUtf8(), path.toUtf8(), headerName.toUtf8(), headerValue.toUtf8()});
        postedBody = form.getBody().toUtf8();
        response = "received";
    }

    /// The operations called, in order: the name and the arguments, each after a space.
    std::vector<std::string> calls;

    /// The call with this name throws a Problem "failed" in place of acting.
    std::string failingCall;

    Task* timerTask = nullptr;
    std::string postedBody;
    std::string osName = "linux";
    std::string releaseName = "r7";

private:
    static std::filesystem::path toPath(const Kel::File& file) { return file.getPath().toUtf8(); }

    static std::string toText(bool flag) { return flag ? "true" : "false"; }

    void record(const std::string& name, const std::vector<std::string>& arguments)
    {
        std::string call = name;
        for (const std::string& argument : arguments)
            call += " " + argument;
        calls.push_back(call);
        if (name == failingCall)
            Problem::throwProblem("failed");
    }
};
