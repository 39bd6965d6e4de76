// Wacky output: fixed lists of substitutions, applied in order.

#include "support/obfuscate.h"

#include <span>
#include <string_view>

#include "core/tavo.h"

namespace zelvan {

namespace {

struct Substitution {
    std::string_view search;
    std::string_view replacement;
};

// Order matters: "th " goes before "th", so a th in front of a blank becomes
// f and any other th becomes d; the same holds for "TH " and "TH".
// The replacements of "n." and "N." end in a blank.
// clang-format off
constexpr Substitution kType0[] = {
    {"r", "w"},   {"l", "w"},   {"qu", "qw"}, {"th ", "f "}, {"th", "d"},
    {"n.", "n, uh-hah-hah-hah. "},
    {"R", "W"},   {"L", "W"},   {"Qu", "Qw"}, {"QU", "QW"},  {"TH ", "F "},
    {"TH", "D"},  {"Th", "D"},
    {"N.", "N, UH-HAH-HAH-HAH. "},
};
constexpr Substitution kType1[] = {
    {"r", "w"},   {"l", "w"},   {"qu", "qw"}, {"th ", "f "}, {"th", "d"},
    {"n.", "n, uh-hah-hah-hah. "},
    {"R", "W"},   {"L", "W"},   {"Qu", "Qw"}, {"QU", "QW"},  {"TH ", "F "},
    {"TH", "D"},  {"Th", "D"},
    {"N.", "N, uh-hah-hah-hah. "},
};
// clang-format on

// Every occurrence, scanning from the left; a replacement isn't searched again.
std::string replaceAll(const std::string& s, const Substitution& sub) {
    std::string out;
    out.reserve(s.size());
    std::size_t from = 0;
    for (std::size_t at = s.find(sub.search); at != std::string::npos;
         at = s.find(sub.search, from)) {
        out.append(s, from, at - from);
        out += sub.replacement;
        from = at + sub.search.size();
    }
    out.append(s, from, std::string::npos);
    return out;
}

std::string applyAll(const std::string& s, std::span<const Substitution> list) {
    std::string text = s;
    for (const Substitution& sub : list) text = replaceAll(text, sub);
    return text;
}

}  // namespace

std::string obfuscateType0(const std::string& s) {
    return applyAll(s, kType0);
}

std::string obfuscateType1(const std::string& s) {
    return applyAll(s, kType1);
}

std::string obfuscateText(const std::string& s, bool bObfuscate, std::int16_t iObfuscateType) {
    if (!bObfuscate) return s;
    return iObfuscateType == 1 ? obfuscateType1(s) : obfuscateType0(s);
}

std::string obfuscateText(const Tavo& tavo, const std::string& s) {
    return obfuscateText(s, tavo.Obfuscate, tavo.ObfuscateType);
}

}  // namespace zelvan
