// SPDX-License-Identifier: MIT
// libkel: Application services
#pragma once

#include <kel/file_kel.h>

#include <fstream>
#include <string>

/// Reads back what an external program wrote into its output and error files.
///
/// Output is read line by line; text in the error file is a failure, whatever the program's exit status. Both files
/// are temporary: the reader deletes them when it goes away.
///
///     StdOutErr output(outFile, errFile); // the files that the program was told to write
///     std::string line;
///     while (output.getMore(line))        // the last call throws what the error file holds
///         process(line);
class KEL_API StdOutErr
{
public:
    /// Opens the output file; missing files are no error.
    StdOutErr(const Ztring& outFile, const Ztring& errFile);

    /// Closes both files and deletes them through the Platform, the output first; an empty path is passed over. What
    /// the platform throws is dropped. That a Platform is installed is not checked.
    ~StdOutErr();

    StdOutErr(const StdOutErr&) = delete;
    StdOutErr& operator=(const StdOutErr&) = delete;

    /// Reads the next line of output, without its line end, and returns true. When there is none, or no output file,
    /// calls checkError and returns false. An output that cannot be read on fails as Kel::File::throwReadingCorrupt
    /// does.
    bool getMore(std::string& line);

    /// Throws a Problem with the whole text of the error file as its message, each line followed by "\n" (empty where
    /// the locale cannot decode it); returns when the file is empty or missing. The file is read once: a second call
    /// finds nothing. One that cannot be read to its end fails as Kel::File::throwReadingCorrupt does.
    void checkError();

private:
    const Kel::File m_outFile;
    const Kel::File m_errFile;
    std::ifstream m_out;
    std::ifstream m_err;
};
