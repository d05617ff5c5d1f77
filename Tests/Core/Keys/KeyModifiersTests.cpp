#include "QuillaryCore/Keys/KeyModifiers.h"

#include <gtest/gtest.h>

namespace quillary {

using M = KeyModifiers;

TEST(KeyModifiers, HaveTheBitsOfStoredShortcuts) {
    EXPECT_EQ(M::shift.rawValue(), 0x20000U);
    EXPECT_EQ(M::control.rawValue(), 0x40000U);
    EXPECT_EQ(M::option.rawValue(), 0x80000U);
    EXPECT_EQ(M::command.rawValue(), 0x100000U);
    EXPECT_EQ(M::relevant.rawValue(), 0x1E0000U);
    EXPECT_EQ(M::relevant, M::shift | M::control | M::option | M::command);
}

TEST(KeyModifiers, AreASet) {
    M set;
    EXPECT_TRUE(set.isEmpty());
    set.insert(M::shift | M::command);
    EXPECT_EQ(set.rawValue(), 0x120000U);
    EXPECT_TRUE(set.contains(M::shift));
    EXPECT_FALSE(set.contains(M::shift | M::option));
    EXPECT_TRUE(set.contains({}));
    EXPECT_TRUE(set.isSubset(M::relevant));
    EXPECT_FALSE(set.isSubset(M::shift));
    EXPECT_TRUE(set.isSuperset(M::command));
    EXPECT_TRUE(set.isDisjoint(M::option | M::control));
    EXPECT_FALSE(set.isDisjoint(M::relevant));
    EXPECT_EQ(set & (M::command | M::option), M::command);
    EXPECT_EQ(set ^ (M::command | M::option), M::shift | M::option);
    EXPECT_EQ(set - M::command, M::shift);
    set.remove(M::shift | M::option);
    EXPECT_EQ(set, M::command);
    EXPECT_NE(set, M(M::command.rawValue() | 1));
}

} // namespace quillary
