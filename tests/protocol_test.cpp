#include "Protocol/CommandFrame.h"
#include "support/HexBytes.h"

#include <gtest/gtest.h>

using namespace testing_support;

TEST(CommandFrame, HeaderCarriesReportIdCommandTargetAndCountOnly)
{
    const CommandFrame frame(Protocol::Command::KeyTable, 3, 9);
    auto expected = report({0x04, 0x11, 0x03, 0, 0, 0, 0, 0, 0x09}, 65);
    EXPECT_EQ(hexFromBytes(frame.toVector()), hexFromBytes(expected));
}

TEST(CommandFrame, StatusReplyProfileIsClampedToTheFiveProfiles)
{
    EXPECT_EQ(Protocol::clampReportedProfile(0), 1);
    EXPECT_EQ(Protocol::clampReportedProfile(1), 1);
    EXPECT_EQ(Protocol::clampReportedProfile(5), 5);
    EXPECT_EQ(Protocol::clampReportedProfile(6), 5);
    EXPECT_EQ(Protocol::clampReportedProfile(200), 5);
}
