// SPDX-License-Identifier: MIT
// truss: script
#include "truss/script/undoredolabels.h"

#include "truss/text/text.h"

#include <kel/commandcontroller.h>
#include <kel/translator.h>

namespace truss
{
UndoRedoLabels::UndoRedoLabels(CommandController& controller) : m_state(controller.getUndoRedoState())
{
    observe(controller);
}

Ztring UndoRedoLabels::getText() const
{
    const Ztring none("-");
    Ztring text = fill(Translator::tr("Undo: %1"), m_state.hasUndo() ? m_state.getUndo() : none);
    text += ", ";
    text += fill(Translator::tr("Redo: %1"), m_state.hasRedo() ? m_state.getRedo() : none);
    return text;
}

void UndoRedoLabels::changed(Bulletin&, const Bulletin& how)
{
    if (const auto* const state = dynamic_cast<const UndoRedoState*>(&how))
        m_state = *state;
}
} // namespace truss
