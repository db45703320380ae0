#include "foundation/not_offered.h"

#include <gtest/gtest.h>

TEST(NotOffered, WhatIsMissingIsToldFromWhatFails) {
  for (const int error : {ENOSYS, EOPNOTSUPP, ENOTSUP, ENOTTY, EINVAL}) {
    EXPECT_TRUE(isNotOffered(error)) << error;
    EXPECT_TRUE(isAttributeNotOffered(error)) << error;
  }
  for (const int error : {0, EIO, ENOSPC, EDQUOT, EROFS, EACCES, ENOENT}) {
    EXPECT_FALSE(isNotOffered(error)) << error;
    EXPECT_FALSE(isAttributeNotOffered(error)) << error;
  }
}

TEST(NotOffered, OnlyAttributesOfOthersFilesMayBeRefused) {
  EXPECT_FALSE(isNotOffered(EPERM));
  EXPECT_TRUE(isAttributeNotOffered(EPERM));
}
