#include "QuorvaFinderExtension/QuorvaActionQueue.hpp"

#include <nlohmann/json.hpp>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using fakePlatform::Event;
using fakePlatform::Operation;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class QuorvaActionQueueTest : public UnitTest {
 protected:
    static Result<void> enqueue(const std::vector<FileURL>& selectedURLs = {},
                                const std::optional<FileURL>& targetedURL = std::nullopt) {
        return QuorvaActionQueue::enqueue({.actionID = "copyFullPath",
                                           .title = "复制完整路径",
                                           .selectedURLs = selectedURLs,
                                           .targetedURL = targetedURL,
                                           .destinationPath = "/destination",
                                           .presetID = "preset"});
    }

    static std::vector<std::string> records() { return platform().filesBelow(queuePath); }

    static nlohmann::json onlyRecord() {
        EXPECT_THAT(records(), SizeIs(1));
        return nlohmann::json::parse(*platform().contents(records().front()));
    }
};

TEST_F(QuorvaActionQueueTest, FolderIsInApplicationSupport) {
    EXPECT_EQ(QuorvaActionQueue::directoryURL(), FileURL::directory(queuePath));
    platform().enterSandbox();
    EXPECT_EQ(QuorvaActionQueue::directoryURL(),
              FileURL::directory("/Users/ada/Library/Containers/"
                                 "app.ferrolin.Quorva.FinderExtension/Data/Library/"
                                 "Application Support/Quorva/ActionQueue"));
}

TEST_F(QuorvaActionQueueTest, LookingTheFolderUpDoesNotCreateIt) {
    (void)QuorvaActionQueue::directoryURL();
    EXPECT_EQ(platform().find(queuePath), nullptr);
    EXPECT_EQ(platform().find(settingsFolder), nullptr);
}

TEST_F(QuorvaActionQueueTest, WithoutApplicationSupportTheFolderIsATemporaryOne) {
    platform().fail(Operation::lookUpApplicationSupport);
    EXPECT_EQ(QuorvaActionQueue::directoryURL(), FileURL::directory("/tmp/quorva-action-queue"));
    ASSERT_TRUE(enqueue().has_value());
    EXPECT_THAT(platform().filesBelow("/tmp/quorva-action-queue"), SizeIs(1));
    platform().failures.clear();
    EXPECT_EQ(QuorvaActionQueue::directoryURL(), FileURL::directory(queuePath));
}

TEST_F(QuorvaActionQueueTest, RecordIsNamedByAUUID) {
    platform().uuids = {"9F1B5C0E-4A60-4D0C-8B6F-3B6C3E0C9A11"};
    ASSERT_TRUE(enqueue().has_value());
    EXPECT_THAT(records(), ElementsAre(queuePath + "/9F1B5C0E-4A60-4D0C-8B6F-3B6C3E0C9A11.json"));
}

TEST_F(QuorvaActionQueueTest, RecordHoldsExactlySevenMembers) {
    platform().timeIntervalSince1970 = 1794787578.25;
    platform().clockStep = 1;
    ASSERT_TRUE(enqueue({FileURL::file("/b c"), FileURL::directory("/a/")},
                        FileURL::directory("/Users/ada/"))
                    .has_value());
    EXPECT_EQ(onlyRecord(), nlohmann::json({{"actionID", "copyFullPath"},
                                            {"title", "复制完整路径"},
                                            {"selectedPaths", {"/b c", "/a"}},
                                            {"targetedPath", "/Users/ada"},
                                            {"destinationPath", "/destination"},
                                            {"presetID", "preset"},
                                            {"createdAt", 1794787578.25}}));
}

TEST_F(QuorvaActionQueueTest, TimeIsARealNumberEvenOnAFullSecond) {
    platform().timeIntervalSince1970 = 1794787578;
    ASSERT_TRUE(enqueue().has_value());
    ASSERT_THAT(platform().jsonObjects, SizeIs(1));
    const double* const createdAt =
        platform().jsonObjects.front().dictionary()->at("createdAt").real();
    ASSERT_NE(createdAt, nullptr);
    EXPECT_EQ(*createdAt, 1794787578.0);
}

TEST_F(QuorvaActionQueueTest, NothingSelectedAndNoTargetAreAnEmptyListAndAnEmptyText) {
    ASSERT_TRUE(enqueue().has_value());
    EXPECT_EQ(onlyRecord().at("selectedPaths"), nlohmann::json::array());
    EXPECT_EQ(onlyRecord().at("targetedPath"), "");
}

TEST_F(QuorvaActionQueueTest, TextsReachTheRecordByteForByte) {
    const std::string hostile = "/a\"b\\c\nd\te\u0301😀";
    ASSERT_TRUE(QuorvaActionQueue::enqueue({.actionID = hostile,
                                            .title = hostile,
                                            .selectedURLs = std::vector{FileURL::file(hostile)},
                                            .targetedURL = FileURL::file(hostile),
                                            .destinationPath = hostile,
                                            .presetID = hostile})
                    .has_value());
    EXPECT_EQ(onlyRecord().at("actionID"), hostile);
    EXPECT_EQ(onlyRecord().at("title"), hostile);
    EXPECT_EQ(onlyRecord().at("selectedPaths").at(0), hostile);
    EXPECT_EQ(onlyRecord().at("targetedPath"), hostile);
    EXPECT_EQ(onlyRecord().at("destinationPath"), hostile);
    EXPECT_EQ(onlyRecord().at("presetID"), hostile);
}

TEST_F(QuorvaActionQueueTest, TenThousandSelectedItemsAreAllInTheRecordInOrder) {
    std::vector<FileURL> urls;
    for (int index = 10'000; index > 0; --index) {
        urls.push_back(FileURL::file("/f" + std::to_string(index)));
    }
    ASSERT_TRUE(enqueue(urls).has_value());
    ASSERT_THAT(onlyRecord().at("selectedPaths"), SizeIs(10'000));
    EXPECT_EQ(onlyRecord().at("selectedPaths").front(), "/f10000");
    EXPECT_EQ(onlyRecord().at("selectedPaths").back(), "/f1");
}

TEST_F(QuorvaActionQueueTest, EveryClickIsAFileOfItsOwn) {
    ASSERT_TRUE(enqueue().has_value());
    ASSERT_TRUE(enqueue().has_value());
    EXPECT_THAT(records(), SizeIs(2));
}

TEST_F(QuorvaActionQueueTest, FolderIsCreatedBeforeTheRecordIsWrittenAtomically) {
    ASSERT_TRUE(enqueue().has_value());
    EXPECT_THAT(platform().journal,
                ElementsAre(Event{Event::Kind::directoryCreated, queuePath},
                            Event{Event::Kind::fileWritten, records().front()}));
}

// Failures.

TEST_F(QuorvaActionQueueTest, EachFailureIsThePlatformsErrorAndLeavesNoRecord) {
    for (const Operation operation :
         {Operation::createDirectory, Operation::serializeJSON, Operation::writeAtomically}) {
        fakePlatform::reset();
        platform().fail(operation, "没有空间");
        const Result<void> result = enqueue();
        ASSERT_FALSE(result.has_value());
        EXPECT_EQ(result.error().localizedDescription, "没有空间");
        EXPECT_THAT(records(), IsEmpty());
    }
}

TEST_F(QuorvaActionQueueTest, FailureToCreateTheFolderEndsTheAttempt) {
    platform().fail(Operation::createDirectory);
    EXPECT_FALSE(enqueue().has_value());
    EXPECT_THAT(platform().jsonObjects, IsEmpty());
    EXPECT_THAT(platform().journal, ElementsAre(Event{Event::Kind::directoryCreated, queuePath}));
}

TEST_F(QuorvaActionQueueTest, FileInPlaceOfTheFolderIsAFailureAndStays) {
    platform().putFile(queuePath, "a file");
    EXPECT_FALSE(enqueue().has_value());
    EXPECT_EQ(platform().contents(queuePath), "a file");
}

TEST_F(QuorvaActionQueueTest, FolderThatMayNotBeWrittenIsAFailure) {
    platform().putDirectory(queuePath).writable = false;
    EXPECT_FALSE(enqueue().has_value());
    EXPECT_THAT(records(), IsEmpty());
}

}  // namespace
}  // namespace quorva
