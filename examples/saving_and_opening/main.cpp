// SPDX-License-Identifier: MIT
// Saving and opening: two objects that point at each other are written as a stream of text and read back.
// References are written as numbers; reading turns them into pointers again once all objects are there. Both parts live
// to the end here; where a neighbour may go before, whoever points at it observes it (see truss/model/nodereference.h).
#include <kel/autodelete.h>
#include <kel/bulletin.h>
#include <kel/reader.h>
#include <kel/serializable.h>
#include <kel/serializablecreator.h>
#include <kel/status.h>
#include <kel/writer.h>

#include <iostream>
#include <limits>
#include <sstream>

namespace
{
class Part : public Bulletin, public Serializable
{
public:
    SerializableCreator* getCreator() override;

    void write(Writer& writer) override
    {
        writer.write(name).write(mass);
        writer.writeObj(dynamic_cast<Part*>(neighbour));
    }

    void read(Reader& reader) override { reader.read(name).read(mass).read(neighbour); }

    bool fixup(Reader& reader) override
    {
        reader.fix(neighbour);
        return true;
    }

    Ztring name;
    double mass = 0;
    Bulletin* neighbour = nullptr;
};

class PartCreator : public SerializableCreator
{
public:
    PartCreator() : SerializableCreator("Part") {}
    Serializable* create() override { return new Part; }
} s_creator;

SerializableCreator* Part::getCreator()
{
    return &s_creator;
}
} // namespace

int main()
{
    const Status status; // an application derives its own, to show progress

    Part wheel;
    Part axle;
    wheel.name = "wheel";
    wheel.mass = 2.5;
    wheel.neighbour = &axle;
    axle.name = "axle";
    axle.neighbour = &wheel;

    std::stringstream stream;
    stream.precision(std::numeric_limits<double>::max_digits10); // else doubles keep six digits
    Writer(stream, "Example file", false).writeObj(&wheel);      // and all that it leads to
    std::cout << stream.str();

    auto& root = dynamic_cast<Part&>(*Reader(stream, "Example", false).perform());
    auto& other = dynamic_cast<Part&>(*root.neighbour); // throws where the file holds something else
    const AutoDelete rootGuard(&root);
    const AutoDelete otherGuard(&other);
    std::cout << root.name << " of " << root.mass << " next to " << other.name << ", which is next to "
              << dynamic_cast<Part&>(*other.neighbour).name << '\n';
}
