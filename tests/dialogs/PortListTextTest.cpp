// Tests of the options dialog's port list entries "COM n".
#include "dialogs/PortListText.h"

#include <gtest/gtest.h>

using namespace zorvik;

TEST(PortListText, EntryIsComSpaceNumber) {
    EXPECT_EQ(portListText(1), "COM 1");
    EXPECT_EQ(portListText(8), "COM 8");
}

TEST(PortListText, EveryEntryOfPorts1To8GivesItsNumberBack) {
    for (int n = 1; n <= 8; ++n)
        EXPECT_EQ(portFromListText(portListText(n)), n);
}

TEST(PortListText, OnlyASingleDigitFrom1To8IsAPort) {
    EXPECT_EQ(portFromListText("COM 0"), std::nullopt);
    EXPECT_EQ(portFromListText("COM 9"), std::nullopt);
    EXPECT_EQ(portFromListText("COM 10"), std::nullopt);
    EXPECT_EQ(portFromListText("COM 1 "), std::nullopt);
}

TEST(PortListText, TextsThatAreNotPortEntriesGiveNoPort) {
    EXPECT_EQ(portFromListText(""), std::nullopt);
    EXPECT_EQ(portFromListText("COM "), std::nullopt);
    EXPECT_EQ(portFromListText("COM3"), std::nullopt);
    EXPECT_EQ(portFromListText("com 3"), std::nullopt);
    EXPECT_EQ(portFromListText("COM x"), std::nullopt);
}
