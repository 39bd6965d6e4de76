// The decoder's section of the settings store.

#include "line21/inl21.h"

namespace zelvan {

namespace {
constexpr const char* kSection = "L21Decoder";
}  // namespace

void InL21::loadDecoderSettings(const SettingsStore& store) {
    EdmKeepsPosition = readBoolSetting(store, kSection, "EdmKeepsPosition", false);
}

void InL21::saveDecoderSettings(SettingsStore& store) const {
    store.set(kSection, "EdmKeepsPosition", boolSettingText(EdmKeepsPosition));
}

}  // namespace zelvan
