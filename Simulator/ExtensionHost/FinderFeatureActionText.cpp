#include "Simulator/ExtensionHost/FinderFeatureActionText.hpp"

#include <algorithm>
#include <bit>
#include <initializer_list>
#include <utility>
#include <vector>

namespace simulator {
namespace {

using Action = quorva::FinderFeatureAction;
using ActionTexts = std::vector<std::pair<Action, std::string>>;

const ActionTexts actionTexts = [] {
    ActionTexts texts = {{Action::createFolder(), "createFolder"},
                         {Action::copyBesideOriginal(), "copyBesideOriginal"},
                         {Action::copyToFolder(), "copyToFolder"},
                         {Action::openInTerminal(), "openInTerminal"},
                         {Action::revealInFinder(), "revealInFinder"},
                         {Action::openWithApplicationPath(), "openWithApplicationPath"},
                         {Action::openFolder(), "openFolder"},
                         {Action::finderViewOption(), "finderViewOption"},
                         {Action::moveToFolder(), "moveToFolder"},
                         {Action::moveSelectionToNewFolder(), "moveSelectionToNewFolder"},
                         {Action::requiresSelection(), "requiresSelection"},
                         {Action::alwaysEnabled(), "alwaysEnabled"}};
    // The payloads in the order in which their types declare them.
    const auto add = [&]<typename Payload>(const std::string& name, Action (*action)(Payload),
                                           std::initializer_list<const char*> payloads) {
        for (int index = 0; const char* const payload : payloads) {
            texts.emplace_back(action(std::bit_cast<Payload>(index++)), name + "(" + payload + ")");
        }
    };
    add("createFile", Action::createFile,
        {"text",
         "rtf",
         "markdown",
         "wordDocument",
         "excelSpreadsheet",
         "powerPointPresentation",
         "pdfDocument",
         "csv",
         "json",
         "xml",
         "yaml",
         "pngImage",
         "jpegImage",
         "swift",
         "readme",
         "html",
         "css",
         "javascript",
         "python",
         "shell",
         "gitignore"});
    add("copyPath", Action::copyPath,
        {"fullPath", "fileName", "parentPath", "shellPath", "markdownLink", "fileNameList"});
    add("openInApplication", Action::openInApplication, {"visualStudioCode", "cursor"});
    return texts;
}();

}  // namespace

std::string finderFeatureActionText(const Action& action) {
    return std::ranges::find(actionTexts, action, &ActionTexts::value_type::first)->second;
}

std::optional<Action> finderFeatureActionWithText(std::string_view text) {
    const auto found = std::ranges::find(actionTexts, text, &ActionTexts::value_type::second);
    return found == actionTexts.end() ? std::nullopt : std::optional(found->first);
}

}  // namespace simulator
