#pragma once
// Wacky output: with the preference on, each caption row goes through a fixed
// list of letter substitutions on its way to the display. Pure text in, text
// out; the two preferences decide whether and which list applies.

#include <cstdint>
#include <string>

namespace zelvan {

class Tavo;

// The row unchanged while wacky output is off; otherwise type 1 for an
// ObfuscateType of 1 and type 0 for any other value.
std::string obfuscateText(const std::string& s, bool bObfuscate, std::int16_t iObfuscateType);
// The same, with the preferences as the program holds them.
std::string obfuscateText(const Tavo& tavo, const std::string& s);

// The two lists; they differ in the case of their last "N." replacement.
std::string obfuscateType0(const std::string& s);
std::string obfuscateType1(const std::string& s);

}  // namespace zelvan
