#include "Simulator/ExtensionHost/FinderFeatureActionText.hpp"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

namespace simulator {
namespace {

using Action = quorva::FinderFeatureAction;

// The payloads in the order in which their types declare them.
constexpr const char* fileTemplates =
    "text rtf markdown wordDocument excelSpreadsheet powerPointPresentation pdfDocument csv json "
    "xml yaml pngImage jpegImage swift readme html css javascript python shell gitignore";
constexpr const char* pathCopyFormats =
    "fullPath fileName parentPath shellPath markdownLink fileNameList";
constexpr const char* applications = "visualStudioCode cursor";

using ActionTexts = std::vector<std::pair<Action, std::string>>;

/// Adds an action for each payload that `names` names.
template <typename Payload>
void add(ActionTexts& texts, const std::string& name, Action (*action)(Payload),
         const std::string& names) {
    std::istringstream words(names);
    int index = 0;
    for (std::string word; words >> word; ++index) {
        texts.emplace_back(action(static_cast<Payload>(index)), name + "(" + word + ")");
    }
}

const ActionTexts& actionTexts() {
    static const ActionTexts texts = [] {
        ActionTexts result = {{Action::createFolder(), "createFolder"},
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
        add(result, "createFile", Action::createFile, fileTemplates);
        add(result, "copyPath", Action::copyPath, pathCopyFormats);
        add(result, "openInApplication", Action::openInApplication, applications);
        return result;
    }();
    return texts;
}

}  // namespace

std::string finderFeatureActionText(const Action& action) {
    return std::ranges::find(actionTexts(), action, &ActionTexts::value_type::first)->second;
}

std::optional<Action> finderFeatureActionWithText(std::string_view text) {
    const auto found = std::ranges::find(actionTexts(), text, &ActionTexts::value_type::second);
    return found == actionTexts().end() ? std::nullopt : std::optional(found->first);
}

}  // namespace simulator
