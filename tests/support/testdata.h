#pragma once
// The recorded samples in tests/data. A missing or unreadable one fails the
// calling test with the file's name, and reads as an empty recording.

#include <gtest/gtest.h>

#include <string>

#include "core/sccreader.h"

namespace zelvan::testing {

inline std::string samplePath(const std::string& name) {
    return std::string(ZELVAN_SAMPLES_DIR) + "/" + name;
}

inline SccRecording sample(const std::string& name) {
    SccRecording rec = readSccFile(samplePath(name));
    if (!rec.header || rec.lines.empty())
        ADD_FAILURE() << "test data missing or unreadable: " << samplePath(name)
                      << (rec.errors.empty() ? "" : " (" + rec.errors.front() + ")");
    return rec;
}

}  // namespace zelvan::testing
