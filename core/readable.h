#pragma once
// The readable notation of raw bytes: "û" (byte 0xFB) and two hexadecimal
// digits stand for one byte. Operators type and paste display frames in it, and
// every frame the program builds passes through fromReadable on its way out.

#include <string>

namespace zelvan {

// The byte that opens an escape of the notation ("û" in the code page).
inline constexpr char kReadableEscape = '\xFB';

// Notation to bytes. After an escape, the next two characters are read as a
// hexadecimal number up to the first non-digit (no digit reads as 0), and all
// three characters become one byte.
std::string fromReadable(const std::string& s);

// Bytes to notation. Printable ASCII (32-126) stands as it is; every other
// byte, 127 and the escape byte itself included, becomes an escape.
std::string toReadable(const std::string& s);

}  // namespace zelvan
