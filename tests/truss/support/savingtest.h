// SPDX-License-Identifier: MIT
// What the tests of saving have in common.
#pragma once

#include <truss/support/trusstest.h>

#include "truss/document/documentfile.h"
#include "truss/platform/linuxplatform.h"

#include <filesystem>
#include <string>

/// A document that was saved as a.truss and edited since, with the platform that the program has.
class SavingTest : public TrussTestOn<truss::LinuxPlatform>
{
protected:
    /// Saves the document with that many nodes, and edits it.
    void prepare(unsigned nodes)
    {
        std::ostringstream csv;
        csv.precision(17);
        for (unsigned i = 0; i < nodes; ++i)
            csv << "node,n" << i << ',' << i / 7. << ',' << i / 11. << ',' << i / 13. << '\n';
        import(csv.str());
        save("a.truss");
        old = directory.read("a.truss");
        edit("add node late 1 2 3");
        save("new.truss");
        edited = directory.read("new.truss");
        std::filesystem::remove(directory / "new.truss");
    }

    Kel::File file(const std::string& name) { return Kel::File(directory / name); }

    void save(const std::string& name) { truss::DocumentFile::save(model(), file(name)); }

    /// Saves the edited document as a.truss; @return the whole message of the failure, empty when there was none.
    std::string trySave()
    {
        try
        {
            save("a.truss");
        }
        catch (const Problem& problem)
        {
            return problem.getMessage().toUtf8();
        }
        return std::string();
    }

    /// Puts the old file back, for its group to read and for others not even that.
    void restore()
    {
        std::filesystem::remove_all(directory / "a.truss.tmp");
        std::filesystem::remove(directory / "a.truss");
        directory.write("a.truss", old);
        std::filesystem::permissions(directory / "a.truss", std::filesystem::perms(0640));
    }

    /// Whether a.truss is the old document byte for byte.
    bool isOld() const { return read() == old; }
    /// Whether it is the edited one, byte for byte but for the time in the first line.
    bool isNew() const { return afterFirstLine(read()) == afterFirstLine(edited); }

    /// All bytes of a.truss, read in one piece since that is done often.
    std::string read() const
    {
        std::string bytes(std::filesystem::file_size(directory / "a.truss"), '\0');
        std::ifstream(directory / "a.truss").read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return bytes;
    }

    bool hasTemporary() const
    {
        return std::filesystem::is_symlink(directory / "a.truss.tmp") || directory.has("a.truss.tmp");
    }

    void expectOldFileAlone()
    {
        EXPECT_TRUE(isOld());
        EXPECT_FALSE(hasTemporary());
    }

    std::string failedToSave() const { return "Failed to save file: '" + directory / "a.truss" + "'"; }
    std::string failedToOpen() const { return "Failed to open file: '" + directory / "a.truss.tmp" + "'"; }
    std::string failedToMove(const std::string& why) const
    {
        return "Failed to move file: '" + directory / "a.truss.tmp" + "'\n" + why;
    }

    static std::string afterFirstLine(const std::string& text) { return text.substr(text.find('\n')); }

    std::string old;
    std::string edited;
};
