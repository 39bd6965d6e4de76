// Wacky output: the substitution lists and the preferences that pick them.

#include "support/obfuscate.h"

#include <gtest/gtest.h>

namespace zelvan {
namespace {

TEST(ObfuscateTest, LowerCaseStepsRunInOrder) {
    EXPECT_EQ(obfuscateType0("Three little rabbits."), "Dwee wittwe wabbits.");
    EXPECT_EQ(obfuscateType0("the end."), "de end.");
    EXPECT_EQ(obfuscateType0("with them"), "wif dem");
    EXPECT_EQ(obfuscateType0("bath time"), "baf time");
    EXPECT_EQ(obfuscateType0("quit"), "qwit");
    EXPECT_EQ(obfuscateType0("a moth"), "a mod");  // no blank behind: d, not f
}

TEST(ObfuscateTest, UpperCaseStepsRunInOrder) {
    EXPECT_EQ(obfuscateType0("Queen LARRY"), "Qween WAWWY");
    EXPECT_EQ(obfuscateType0("QUIET THE LION."), "QWIET DE WION, UH-HAH-HAH-HAH. ");
    EXPECT_EQ(obfuscateType0("BATH TIME"), "BAF TIME");
}

TEST(ObfuscateTest, SentenceEndAfterNGrowsTheRow) {
    EXPECT_EQ(obfuscateType0("The moon. Thanks"), "De moon, uh-hah-hah-hah.  Danks");
    EXPECT_EQ(obfuscateType0("SON."), "SON, UH-HAH-HAH-HAH. ");
    EXPECT_EQ(obfuscateType1("SON."), "SON, uh-hah-hah-hah. ");
    // Each occurrence adds 17 characters; a replacement isn't searched again.
    EXPECT_EQ(obfuscateType0("n.n.").size(), 4u + 2 * 17);
    EXPECT_EQ(obfuscateType1("n.N.").size(), 4u + 2 * 17);
}

TEST(ObfuscateTest, PreferencesPickTheList) {
    EXPECT_EQ(obfuscateText("rabbit", false, 1), "rabbit");
    EXPECT_EQ(obfuscateText("SON.", true, 1), "SON, uh-hah-hah-hah. ");
    EXPECT_EQ(obfuscateText("SON.", true, 0), "SON, UH-HAH-HAH-HAH. ");
    EXPECT_EQ(obfuscateText("SON.", true, 2), "SON, UH-HAH-HAH-HAH. ");
    EXPECT_EQ(obfuscateText("SON.", true, -1), "SON, UH-HAH-HAH-HAH. ");
    EXPECT_EQ(obfuscateText("", true, 0), "");
}

}  // namespace
}  // namespace zelvan
