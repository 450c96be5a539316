#include "Protocol/CommandFrame.h"

#include <gtest/gtest.h>

TEST(CommandFrame, StatusReplyProfileIsClampedToTheFiveProfiles)
{
    EXPECT_EQ(Protocol::clampReportedProfile(0), 1);
    EXPECT_EQ(Protocol::clampReportedProfile(1), 1);
    EXPECT_EQ(Protocol::clampReportedProfile(5), 5);
    EXPECT_EQ(Protocol::clampReportedProfile(6), 5);
    EXPECT_EQ(Protocol::clampReportedProfile(200), 5);
}
