// SPDX-License-Identifier: MIT
// Saving a file: what a program sets up at its start, and a save that keeps the old file until the new one is complete.
// The platform is the least that saving needs; examples/truss/platform has one that outlives a power failure, too.
#include <kel/appversion.h>
#include <kel/branding.h>
#include <kel/bulletin.h>
#include <kel/dynamicfactory.h>
#include <kel/file_kel.h>
#include <kel/filereader.h>
#include <kel/filewriter.h>
#include <kel/interrupted.h>
#include <kel/log_kel.h>
#include <kel/platform.h>
#include <kel/reader.h>
#include <kel/serializable.h>
#include <kel/serializablecreator.h>
#include <kel/status.h>
#include <kel/task.h>
#include <kel/version.h>
#include <kel/writer.h>

#include <clocale>
#include <cstdio>
#include <iostream>
#include <limits>
#include <memory>

namespace
{
class Settings : public Serializable
{
public:
    SerializableCreator* getCreator() override;
    void write(Writer& writer) override { writer.write(title).write(tolerance); }
    void read(Reader& reader) override { reader.read(title).read(tolerance); }

    Ztring title;
    double tolerance = 0;
};

class SettingsCreator : public SerializableCreator
{
public:
    SettingsCreator() : SerializableCreator("Settings") {}
    Serializable* create() override { return new Settings; }
} s_creator;

SerializableCreator* Settings::getCreator()
{
    return &s_creator;
}

class Console : public Kel::Log
{
    using Kel::Log::append; // the one for a Problem
    void append(const Ztring& text, Message::Type) override { std::cout << text << '\n'; }
};

/// Reaches files; whatever else the library asks for is not there.
class FilePlatform : public Platform
{
    // A save deletes the old file, then moves the new one into its place; the move does both in one step.
    void deleteFile(const Kel::File& file, bool quiet) override
    {
        if (quiet)
            std::remove(file.getPath().toUtf8().c_str());
    }
    void moveFile(const Kel::File& from, const Kel::File& to, bool) override
    {
        if (std::rename(from.getPath().toUtf8().c_str(), to.getPath().toUtf8().c_str()) != 0)
            to.throwWritingCorrupt();
    }

    void execute(const Ztring&, bool, bool) override { refuse(); }
    void startTimer(Task* task, unsigned int) override
    {
        const std::unique_ptr<Task> owned(task);
        refuse();
    }
    void postForm(const Ztring&, const Ztring&, const Ztring&, const Ztring&, FormDataPoster&, Ztring&) override
    {
        refuse();
    }
    std::string getOsName() override { return "any"; }
    std::string getReleaseName() override { return "any"; }

    [[noreturn]] static void refuse() { Problem::throwProblem("Not available"); }
};

void save(Settings& settings, const Kel::File& file)
{
    FileWriter saving;
    Writer* const writer = saving.open(file, false);
    writer->getOut().precision(std::numeric_limits<double>::max_digits10); // else doubles keep six digits
    writer->writeObj(&settings);
    if (!writer->getOut().flush()) // a full disk is noticed here and nowhere else
        file.throwWritingCorrupt();
    saving.close(); // without it the old file stays
}

std::unique_ptr<Settings> open(const Kel::File& file)
{
    FileReader opening;
    std::unique_ptr<Serializable> root(opening.open(file, false)->perform());
    auto& settings = dynamic_cast<Settings&>(*root); // throws where the file holds something else
    static_cast<void>(root.release());
    return std::unique_ptr<Settings>(&settings);
}

void work()
{
    const Kel::File file("settings.example");
    Settings settings;
    settings.title = "Brücke";
    settings.tolerance = 0.1;
    save(settings, file);
    const std::unique_ptr<Settings> opened = open(file);
    std::cout << opened->title << ", " << opened->tolerance << '\n';
    Platform::getSingleton()->deleteFile(file, true);
    open(file);
}
} // namespace

int main()
{
    std::setlocale(LC_ALL, "C.UTF-8"); // a program for users takes "": without, "Brücke" would be an empty text
    Branding::getSingleton()->set("Example Makers", "Example", "example", "exa", "www.example.org", "%1@example.org",
                                  "ExampleInstallMutex", "EXAMPLE_DIR", "examplem");
    *AppVersion::getCurrent() = Version(1, 0, 0, AppVersion::getStaticKey());
    const Status status;
    DynamicFactory::getSingleton().add(new Console);
    DynamicFactory::getSingleton().add(new FilePlatform);

    try
    {
        work();
    }
    catch (const Interrupted&)
    {
        std::cout << "interrupted\n"; // no failure; where nobody can press Stop it does not come
    }
    catch (Problem& problem)
    {
        Kel::Log::getSingleton()->append(problem, Message::Error); // what the user is shown
    }
}
