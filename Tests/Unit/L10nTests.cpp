#include "QuorvaFinderExtension/L10n.hpp"

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using L10nTest = UnitTest;

TEST_F(L10nTest, KeyWithoutTranslationIsItsOwnText) {
    EXPECT_EQ(L10n::t("打开指定路径..."), "打开指定路径...");
}

TEST_F(L10nTest, KeyWithTranslationIsTranslated) {
    platform().translations["新建"] = "New";
    EXPECT_EQ(L10n::t("新建"), "New");
    EXPECT_EQ(L10n::t("新建文件夹"), "新建文件夹");
}

TEST_F(L10nTest, TranslationMayBeEmpty) {
    platform().translations["桌面"] = "";
    EXPECT_EQ(L10n::t("桌面"), "");
}

}  // namespace
}  // namespace quorva
