#pragma once
// The control code reference, "ansi.rtf": the sign's frames in the readable
// notation, the line-21 codes the decoder knows and the Windows-1252 table,
// written from the program's own tables so that it can't drift from them.
// The build writes it beside the program; the reference window shows it.

#include <string>

namespace zelvan {

std::string ansiReferenceRtf();

}  // namespace zelvan
