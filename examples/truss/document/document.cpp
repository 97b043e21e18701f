// SPDX-License-Identifier: MIT
// truss: document
#include "truss/document/document.h"

#include "truss/analysis/response.h"
#include "truss/model/model.h"

#include <kel/command.h>
#include <kel/commandcontroller.h>
#include <kel/dynamicfactory.h>
#include <kel/interrupted.h>
#include <kel/problem.h>
#include <kel/status.h>
#include <kel/translator.h>
#include <kel/undoredostate.h>

#include <utility>

namespace truss
{
namespace
{
constexpr unsigned maximumUndo = 1000;

CommandController& getController()
{
    return DynamicFactory::getSingleton().getOrCreate<CommandController>();
}
} // namespace

Document::Document()
{
    getController().setMaximumUndo(maximumUndo);
    replace(BulletinPtr<Model>(new Model));
}

Document::~Document()
{
    getController().clear();
}

void Document::replace(BulletinPtr<Model> model)
{
    observe(*model); // first, since it takes memory
    getController().clear();
    m_response.reset();
    m_model = std::move(model);
    m_isIncomplete = false;
}

void Document::execute(std::unique_ptr<Command> command)
{
    getController().execute(command.release());
    while (getController().pruneUndo())
        ;
    if (Status::getSingleton().isInterrupted())
        throw Interrupted();
}

void Document::undo()
{
    if (!getController().getUndoRedoState().hasUndo())
        Problem::throwProblem(Translator::tr("There is nothing to undo"));
    getController().undo();
}

void Document::redo()
{
    if (!getController().getUndoRedoState().hasRedo())
        Problem::throwProblem(Translator::tr("There is nothing to redo"));
    getController().redo();
}

const Response& Document::requireResponse() const
{
    if (m_response == nullptr)
        Problem::throwProblem(Translator::tr("The truss has not been solved"));
    return *m_response;
}

void Document::setResponse(std::unique_ptr<Response> response)
{
    m_response = std::move(response);
}

void Document::added(Bulletin&, Bulletin&)
{
    m_response.reset();
}

void Document::changed(Bulletin&, const Bulletin&)
{
    m_response.reset();
}

void Document::removed(BulletinBoard&, Bulletin&)
{
    m_response.reset();
}
} // namespace truss
