#include "Platform/Bundle.hpp"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include "Tests/Cocoa/MainBundle.hpp"

TEST_F(MainBundle, IsTheOneThatHoldsTheProgram) {
    EXPECT_EQ(description(), expected("没有"));
}

TEST_F(MainBundle, ShowsTheKeyWhenTheStringTableIsNone) {
    write("Sample.appex/Contents/Resources/zh-Hans.lproj/Localizable.strings", "\"没有\" = {{{");
    EXPECT_EQ(description(), expected("没有"));
}

TEST_F(MainBundle, DoesNotDependOnTheLocale) {
    EXPECT_EQ(description("LC_ALL=C"), expected("没有"));
}

TEST(LocalizedString, IsTheKeyWhenThereIsNoTranslation) {
    EXPECT_EQ(quorva::platform::localizedString("没有已启用功能"), "没有已启用功能");
    EXPECT_EQ(quorva::platform::localizedString(""), "");
}
