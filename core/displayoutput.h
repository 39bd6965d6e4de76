#pragma once
// What the pipeline, start-up and shutdown ask of the display output window.

#include <cstdint>
#include <string>

namespace zelvan {

class DisplayOutput {
  public:
    virtual ~DisplayOutput() = default;
    virtual void showForm() = 0;
    virtual void hideForm() = 0;
    // Called for every non-null byte drained, with the style the filter gave.
    virtual void doInput(std::int16_t theStyle, const std::string& theLine) = 0;
    virtual void showStartupBarker(bool bDoIt) = 0;
    virtual void DWErase() = 0;
    // How many rows of the sign the display uses, 1 to 3.
    virtual std::int16_t rowsInUse() const { return 3; }
};

}  // namespace zelvan
