// The command stack: duplicates refused within a group, look-up by local and global name
// without regard to case, the newest group winning, and whole groups removed.
#include "cad/app/CommandStack.h"

#include <gtest/gtest.h>

namespace cad::app {
namespace {

TEST(CommandStack, RefusesDuplicatesInAGroupOnly) {
    CommandStack stack;
    int calls = 0;
    EXPECT_EQ(stack.addCommand("KEBQRBVANTOR", "VNK", "VNK", 3, [&] { ++calls; }),
              ErrorStatus::eOk);
    EXPECT_EQ(stack.addCommand("KEBQRBVANTOR", "vnk", "OTHER", 3, [] {}),
              ErrorStatus::eDuplicateKey);
    EXPECT_EQ(stack.addCommand("kebqrbvantor", "OTHER", "Vnk", 3, [] {}),
              ErrorStatus::eDuplicateKey);
    EXPECT_EQ(stack.commands("KEBQRBVANTOR").size(), 1u);
    EXPECT_EQ(stack.addCommand("ELSEWHERE", "VNK", "VNK", 0, [] {}), ErrorStatus::eOk);
    EXPECT_EQ(stack.addCommand("G", "TWO WORDS", "X", 0, [] {}), ErrorStatus::eInvalidInput);
    EXPECT_EQ(stack.addCommand("G", "", "X", 0, [] {}), ErrorStatus::eInvalidInput);

    // The group added last is on top.
    EXPECT_EQ(stack.lookupLocalCmd("vnk")->groupName, "ELSEWHERE");
    EXPECT_EQ(stack.removeGroup("elsewhere"), ErrorStatus::eOk);
    const Command* found = stack.lookupLocalCmd("vnk");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->flags, 3);
    found->function();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(stack.removeGroup("ELSEWHERE"), ErrorStatus::eKeyNotFound);
}

TEST(CommandStack, GlobalAndLocalNamesAreLookedUpApart) {
    CommandStack stack;
    stack.addCommand("G", "INSERTPART", "부품삽입", 0, [] {});
    EXPECT_NE(stack.lookupGlobalCmd("_insertpart"), nullptr);
    EXPECT_NE(stack.lookupGlobalCmd("INSERTPART"), nullptr);
    EXPECT_EQ(stack.lookupLocalCmd("INSERTPART"), nullptr);
    EXPECT_NE(stack.lookupLocalCmd("부품삽입"), nullptr);
    EXPECT_EQ(stack.removeCmd("G", "insertpart"), ErrorStatus::eOk);
    EXPECT_EQ(stack.lookupGlobalCmd("INSERTPART"), nullptr);
    EXPECT_EQ(stack.removeCmd("G", "INSERTPART"), ErrorStatus::eKeyNotFound);
}

}  // namespace
}  // namespace cad::app
