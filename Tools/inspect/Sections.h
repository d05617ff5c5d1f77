#pragma once

#include "Tools/inspect/Operation.h"

namespace quillary::inspect {

// Each adds the operations of one subject; each stands in a source of its own.
void addCSVOperations(OperationTable& table);
void addDiffOperations(OperationTable& table);
void addFilesOperations(OperationTable& table);
void addHighlighterOperations(OperationTable& table);
void addJSONOperations(OperationTable& table);
void addMarkdownOperations(OperationTable& table);
void addNotesOperations(OperationTable& table);
void addSearchOperations(OperationTable& table);
void addShortcutsOperations(OperationTable& table);
void addSidebarLayoutOperations(OperationTable& table);
void addSoloOperations(OperationTable& table);

} // namespace quillary::inspect
