// Wacky output: the substitution lists, their order, and the preferences.

#include "support/obfuscate.h"

#include <gtest/gtest.h>

namespace zelvan {
namespace {

TEST(ObfuscateTest, StepsRunInOrderAndThePreferencesPickTheList) {
    EXPECT_EQ(obfuscateType0("Three little rabbits."), "Dwee wittwe wabbits.");
    EXPECT_EQ(obfuscateType0("the end. with them"), "de end. wif dem");
    EXPECT_EQ(obfuscateType0("bath time, a moth"), "baf time, a mod");
    EXPECT_EQ(obfuscateType0("Queen LARRY quit"), "Qween WAWWY qwit");
    EXPECT_EQ(obfuscateType0("QUIET THE LION."), "QWIET DE WION, UH-HAH-HAH-HAH. ");
    EXPECT_EQ(obfuscateType0("The moon. Thanks"), "De moon, uh-hah-hah-hah.  Danks");
    // A replacement isn't searched again: each "n." grows the row by 17.
    EXPECT_EQ(obfuscateType0("n.n.").size(), 4u + 2 * 17);
    EXPECT_EQ(obfuscateText("rabbit", false, 1), "rabbit");
    EXPECT_EQ(obfuscateText("SON.", true, 1), "SON, uh-hah-hah-hah. ");
    for (std::int16_t type : {0, 2, -1})
        EXPECT_EQ(obfuscateText("SON.", true, type), "SON, UH-HAH-HAH-HAH. ");
    EXPECT_EQ(obfuscateText("", true, 0), "");
}

}  // namespace
}  // namespace zelvan
