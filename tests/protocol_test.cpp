#include "Protocol/CommandFrame.h"

#include <gtest/gtest.h>

TEST(CommandFrame, StatusReplyProfileIsClampedToTheFiveProfiles)
{
    for (auto [reported, profile] : {std::pair{0, 1}, {1, 1}, {5, 5}, {6, 5}, {200, 5}})
        EXPECT_EQ(Protocol::clampReportedProfile(reported), profile) << reported;
}
