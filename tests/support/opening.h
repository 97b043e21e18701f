// SPDX-License-Identifier: MIT
// Opens streams in every way and tells how it ended. It replaces the allocation functions of the whole program: include
// it in one source file of an executable only.
#pragma once

#include <kel/problem.h>
#include <kel/reader.h>
#include <kel/writer.h>

#include "filledpipe.h"
#include "memorypeak.h"
#include "persistablebase.h"
#include "streambuffers.h"
#include "tally.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

/// How the reading of a stream ended, and how much memory it took.
struct Ending
{
    std::string message;     // empty: a root was returned
    std::string graph;       // all objects, written again; empty after a failure
    std::size_t objects = 0; // how many were made
    std::size_t memory = 0;
};

inline Tally s_streams("hostile streams");

inline std::string writeAll()
{
    std::ostringstream out;
    out.precision(std::numeric_limits<double>::max_digits10);
    Writer writer(out, "Test", false);
    for (Persistable* const object : Persistable::getAll())
        writer.writeObj(object);
    return out.str();
}

/// Returns what `perform` gave, and deletes all objects.
template <class Perform>
Ending getEnding(const Perform& perform)
{
    s_streams.add();
    Ending ending;
    const memorypeak::Meter meter;
    try
    {
        EXPECT_TRUE(perform());
        ending.memory = meter.getPeak();
        ending.graph = writeAll();
    }
    catch (const Problem& problem)
    {
        ending.memory = meter.getPeak();
        ending.message = problem.getMessage().toUtf8();
        EXPECT_FALSE(ending.message.empty());
    }
    ending.objects = Persistable::getCount();
    Persistable::deleteAll();
    return ending;
}

inline Ending open(std::istream& in)
{
    return getEnding(
        [&in]
        {
            Reader reader(in, "Test", false);
            return reader.perform();
        });
}

inline Ending open(const std::string& stream)
{
    std::istringstream in(stream);
    return open(in);
}

inline Ending openPipe(const std::string& stream)
{
    const FilledPipe pipe(stream);
    std::ifstream in(pipe.getPath(), std::ios::binary);
    return open(in);
}

inline Ending openByteByByte(const std::string& stream)
{
    DrippingBuffer buffer(stream);
    std::istream in(&buffer);
    return open(in);
}
