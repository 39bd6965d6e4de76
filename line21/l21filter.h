#pragma once
// The line-21 filter entry and row readers over the shared caption memory, in
// the shape of the filter contract. The serial and the timecode board windows
// wrap it; it has no window of its own, so showForm and hideForm do nothing.

#include "core/inputfilter.h"
#include "line21/inl21.h"

namespace zelvan {

class L21Filter : public InputFilter {
  public:
    explicit L21Filter(InL21& memory) : m_memory(memory) {}

    void showForm() override {}
    void hideForm() override {}
    std::int16_t filterEntry(const std::string& inString, std::string& outString) override {
        return m_memory.FilterL21(inString, outString);
    }
    std::string getExternalText(std::int16_t i) override { return m_memory.getExternalTextL21(i); }
    std::string getExternalTextTrimmed(std::int16_t i) override {
        return m_memory.getExternalTextTrimmedL21(i);
    }

    InL21& memory() { return m_memory; }

  private:
    InL21& m_memory;
};

}  // namespace zelvan
