#include "Simulator/ExtensionHost/FinderFeatureActionText.hpp"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

using quorva::FinderApplication;
using quorva::FinderFileTemplate;
using quorva::FinderPathCopyFormat;
using Action = quorva::FinderFeatureAction;

struct ActionText {
    Action action;
    std::string_view text;
};

constexpr auto actionTexts = std::to_array<ActionText>({
    {Action::createFile(FinderFileTemplate::text), "createFile(text)"},
    {Action::createFile(FinderFileTemplate::rtf), "createFile(rtf)"},
    {Action::createFile(FinderFileTemplate::markdown), "createFile(markdown)"},
    {Action::createFile(FinderFileTemplate::wordDocument), "createFile(wordDocument)"},
    {Action::createFile(FinderFileTemplate::excelSpreadsheet), "createFile(excelSpreadsheet)"},
    {Action::createFile(FinderFileTemplate::powerPointPresentation),
     "createFile(powerPointPresentation)"},
    {Action::createFile(FinderFileTemplate::pdfDocument), "createFile(pdfDocument)"},
    {Action::createFile(FinderFileTemplate::csv), "createFile(csv)"},
    {Action::createFile(FinderFileTemplate::json), "createFile(json)"},
    {Action::createFile(FinderFileTemplate::xml), "createFile(xml)"},
    {Action::createFile(FinderFileTemplate::yaml), "createFile(yaml)"},
    {Action::createFile(FinderFileTemplate::pngImage), "createFile(pngImage)"},
    {Action::createFile(FinderFileTemplate::jpegImage), "createFile(jpegImage)"},
    {Action::createFile(FinderFileTemplate::swift), "createFile(swift)"},
    {Action::createFile(FinderFileTemplate::readme), "createFile(readme)"},
    {Action::createFile(FinderFileTemplate::html), "createFile(html)"},
    {Action::createFile(FinderFileTemplate::css), "createFile(css)"},
    {Action::createFile(FinderFileTemplate::javascript), "createFile(javascript)"},
    {Action::createFile(FinderFileTemplate::python), "createFile(python)"},
    {Action::createFile(FinderFileTemplate::shell), "createFile(shell)"},
    {Action::createFile(FinderFileTemplate::gitignore), "createFile(gitignore)"},
    {Action::copyPath(FinderPathCopyFormat::fullPath), "copyPath(fullPath)"},
    {Action::copyPath(FinderPathCopyFormat::fileName), "copyPath(fileName)"},
    {Action::copyPath(FinderPathCopyFormat::parentPath), "copyPath(parentPath)"},
    {Action::copyPath(FinderPathCopyFormat::shellPath), "copyPath(shellPath)"},
    {Action::copyPath(FinderPathCopyFormat::markdownLink), "copyPath(markdownLink)"},
    {Action::copyPath(FinderPathCopyFormat::fileNameList), "copyPath(fileNameList)"},
    {Action::openInApplication(FinderApplication::visualStudioCode),
     "openInApplication(visualStudioCode)"},
    {Action::openInApplication(FinderApplication::cursor), "openInApplication(cursor)"},
    {Action::createFolder(), "createFolder"},
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
    {Action::alwaysEnabled(), "alwaysEnabled"},
});

}  // namespace

std::string finderFeatureActionText(const quorva::FinderFeatureAction& action) {
    return std::string(std::ranges::find(actionTexts, action, &ActionText::action)->text);
}

std::optional<quorva::FinderFeatureAction> finderFeatureActionWithText(std::string_view text) {
    const auto* const found = std::ranges::find(actionTexts, text, &ActionText::text);
    if (found == actionTexts.end()) {
        return std::nullopt;
    }
    return found->action;
}

}  // namespace simulator
