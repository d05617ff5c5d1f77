#pragma once

#include "QuillaryCore/Notes/SidebarLayout.h"
#include "Tools/inspect/AnswerWriter.h"
#include "Tools/inspect/Arguments.h"

namespace quillary::inspect {

/// The argument "layout": an object with the keys of the sidebar's file.
SidebarLayout layoutArgument(Arguments& arguments);

/// The same as a member of an answer.
void writeLayout(AnswerWriter& answer, const SidebarLayout& layout);

} // namespace quillary::inspect
