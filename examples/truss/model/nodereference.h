// SPDX-License-Identifier: MIT
// truss: model
#pragma once

#include <kel/deletedreceiver.h>
#include <kel/receiver.h>

class Reader;
class Writer;

namespace truss
{
class Node;

/// A pointer to a node that becomes null when the node is deleted, because it observes the node.
///
/// In a stream it is an object reference. Between read() and fix() it holds the id that the stream has for the node,
/// apart from the pointer, so that a reading that fails in between leaves no pointer that leads nowhere.
class NodeReference : public Receiver, public DeletedReceiver
{
public:
    NodeReference() = default;
    explicit NodeReference(Node& node) { set(&node); }
    NodeReference(const NodeReference&) = delete;
    NodeReference& operator=(const NodeReference&) = delete;

    /// The node, or null when there is none any more.
    Node* get() const { return m_node; }
    void set(Node* node);

    void write(Writer& writer) const;
    void read(Reader& reader);
    /// Turns the id into the pointer. A reference to anything but a node of the stream is a Problem.
    void fix(Reader& reader);

private:
    void deleted(Bulletin& node) override;

    Node* m_node = nullptr;
    Bulletin* m_id = nullptr;
};
} // namespace truss
