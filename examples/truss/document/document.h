// SPDX-License-Identifier: MIT
// truss: document
#pragma once

#include "truss/model/bulletinptr.h"

#include <kel/addedreceiver.h>
#include <kel/changedreceiver.h>
#include <kel/receiver.h>
#include <kel/removedreceiver.h>

#include <memory>

class Command;

namespace truss
{
class Model;
struct Response;

/// What the user works on: the model, its history in the CommandController, and the result of the last analysis.
///
/// The result is of this very model: it listens to the model and drops the result with the first edit.
class Document : public Receiver, public AddedReceiver, public ChangedReceiver, public RemovedReceiver
{
public:
    /// An empty model. One document at a time, since there is one CommandController.
    Document();
    /// Clears the history, whose commands refer to the model.
    ~Document() override;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    Model& getModel() { return *m_model; }

    /// Takes another model in place of the present one, which is destroyed, and forgets the history.
    void replace(BulletinPtr<Model> model);

    /// @name Editing
    /// @{

    /// Executes a command and keeps it for undo; what it throws passes through, and the model is as it was. A command
    /// that the user interrupted is kept too, with the part of it that was done, and then Interrupted is thrown.
    void execute(std::unique_ptr<Command> command);
    /// With nothing to undo or redo a Problem.
    void undo();
    void redo();

    /// @}
    /// @name Completeness
    /// @{

    /// Notes that something which belongs into the document was not read to its end.
    void setIncomplete() { m_isIncomplete = true; }
    bool isIncomplete() const { return m_isIncomplete; }

    /// @}
    /// @name Result
    /// @{

    /// Null when the model has not been solved, or has been edited since.
    const Response* getResponse() const { return m_response.get(); }
    /// The same, but a Problem in place of null.
    const Response& requireResponse() const;
    void setResponse(std::unique_ptr<Response> response);

    /// @}

private:
    void added(Bulletin& board, Bulletin& obj) override;
    void changed(Bulletin& what, const Bulletin& how) override;
    void removed(BulletinBoard& board, Bulletin& obj) override;

    BulletinPtr<Model> m_model;
    std::unique_ptr<Response> m_response;
    bool m_isIncomplete = false;
};
} // namespace truss
