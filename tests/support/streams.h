// SPDX-License-Identifier: MIT
// Object streams in memory.
#pragma once

#include <kel/appversion.h>
#include <kel/bulletinkey.h>
#include <kel/kelversion.h>
#include <kel/reader.h>
#include <kel/serializable.h>
#include <kel/writer.h>

#include <sstream>
#include <string>

/// What every stream of these tests begins with: a header text and the version table, independently of the library.
inline std::string getPreamble(const std::string& header = "Test")
{
    const std::string application = "10 AppVersion 5 0 0 ";
    const std::string library = "10 KelVersion 5 1 3 ";
    const bool isApplicationFirst = AppVersion::getStaticKey() < KelVersion::getStaticKey();
    return std::to_string(header.size()) + " " + header + " \n2 " +
           (isApplicationFirst ? application + library : library + application) + "\n";
}

/// The records of a graph, without what stands before them.
inline std::string write(Serializable* root)
{
    std::ostringstream out;
    Writer writer(out, "Test", false);
    const std::size_t start = out.str().size();
    writer.writeObj(root);
    return out.str().substr(start);
}

/// Reads records that stand after a proper preamble.
template <class T>
T* read(const std::string& records)
{
    std::istringstream in(getPreamble() + records);
    Reader reader(in, "Test", false);
    return dynamic_cast<T*>(reader.perform());
}
