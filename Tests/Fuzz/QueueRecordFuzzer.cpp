// A record of any text is written whole and read back as it was, or, when JSON has no form for the
// text, is refused and leaves nothing behind.
#include <nlohmann/json.hpp>

#include "QuorvaFinderExtension/QuorvaActionQueue.hpp"
#include "Tests/Fuzz/FuzzedMachine.hpp"

namespace quorva {
namespace {

std::vector<std::string> pathsOfSelection(const QuorvaActionRecord& record) {
    std::vector<std::string> paths;
    for (const FileURL& url : record.selectedURLs.urls()) {
        paths.push_back(url.path());
    }
    return paths;
}

}  // namespace
}  // namespace quorva

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorva;
    fakePlatform::reset();
    FuzzedValues values(data, size);
    std::vector<FileURL> selection;
    for (std::size_t count = values.number(4); count > 0; --count) {
        selection.push_back(FileURL::file("/" + values.text()));
    }
    const QuorvaActionRecord record = {
        .actionID = values.text(),
        .title = values.text(),
        .selectedURLs = selection,
        .targetedURL =
            values.chance() ? std::optional(FileURL::directory("/" + values.text())) : std::nullopt,
        .destinationPath = values.text(),
        .presetID = values.rest(),
    };
    std::vector<std::string> texts = pathsOfSelection(record);
    texts.insert(texts.end(),
                 {record.actionID, record.title, record.destinationPath, record.presetID,
                  record.targetedURL ? record.targetedURL->path() : ""});
    const bool isWritable = std::ranges::all_of(texts, isText);
    const Result<void> queued = QuorvaActionQueue::enqueue(record);
    const std::vector<std::string> files =
        fakePlatform::state().filesBelow(QuorvaActionQueue::directoryURL().path());
    require(queued.has_value() == isWritable, "a record of text is written, any other is refused");
    require(files.size() == (isWritable ? 1U : 0U), "a record is one file, a refusal is none");
    if (!isWritable) {
        require(!queued.error().localizedDescription.empty(), "a refusal says why");
        return 0;
    }
    require(files.front().ends_with(".json"), "a record is a .json file");
    const auto json = nlohmann::json::parse(*fakePlatform::state().contents(files.front()));
    require(json.size() == 7, "a record has seven members");
    require(json.at("actionID") == record.actionID && json.at("title") == record.title &&
                json.at("destinationPath") == record.destinationPath &&
                json.at("presetID") == record.presetID && json.at("targetedPath") == texts.back() &&
                json.at("selectedPaths") == pathsOfSelection(record) &&
                json.at("createdAt").is_number(),
            "a record is read back as it was");
    return 0;
}
