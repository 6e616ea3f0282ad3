#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quorva {

/// The top-level features of the menu. The declaration order is the enumeration order only; the
/// order in which they are shown by default is `FinderFeatureSettings`' own.
enum class FinderFeature {
    createFile,
    quickOpen,
    copyFile,
    copyPath,
    openWith,
    viewOptions,
    customActions,
    organizeFile,
    batchRename,
    archiveTools,
    scheduledDeletion,
    imageTools,
    pdfTools,
    developerTools,
};

/// What `createFile` makes. The containing application owns names, extensions and contents.
enum class FinderFileTemplate {
    text,
    rtf,
    markdown,
    wordDocument,
    excelSpreadsheet,
    powerPointPresentation,
    pdfDocument,
    csv,
    json,
    xml,
    yaml,
    pngImage,
    jpegImage,
    swift,
    readme,
    html,
    css,
    javascript,
    python,
    shell,
    gitignore,
};

/// The form in which `copyPath` copies the selected paths.
enum class FinderPathCopyFormat {
    fullPath,
    fileName,
    parentPath,
    shellPath,
    markdownLink,
    fileNameList,
};

/// The editors that `openInApplication` names.
enum class FinderApplication {
    visualStudioCode,
    cursor,
};

/// What kind of command a menu entry is: it decides how the entry is built and when it is enabled.
///
/// A value of one of fifteen cases, of which the first three carry a payload.
class FinderFeatureAction {
 public:
    enum class Case {
        createFile,
        copyPath,
        openInApplication,
        createFolder,
        copyBesideOriginal,
        copyToFolder,
        openInTerminal,
        revealInFinder,
        openWithApplicationPath,
        openFolder,
        finderViewOption,
        moveToFolder,
        moveSelectionToNewFolder,
        /// Carried out by action identifier, and only when something is selected.
        requiresSelection,
        /// Carried out by action identifier, whatever is selected.
        alwaysEnabled,
    };

    using Payload =
        std::variant<std::monostate, FinderFileTemplate, FinderPathCopyFormat, FinderApplication>;

    static constexpr FinderFeatureAction createFile(FinderFileTemplate fileTemplate) {
        return {Case::createFile, fileTemplate};
    }
    static constexpr FinderFeatureAction copyPath(FinderPathCopyFormat format) {
        return {Case::copyPath, format};
    }
    static constexpr FinderFeatureAction openInApplication(FinderApplication application) {
        return {Case::openInApplication, application};
    }
    static constexpr FinderFeatureAction createFolder() { return {Case::createFolder, {}}; }
    static constexpr FinderFeatureAction copyBesideOriginal() {
        return {Case::copyBesideOriginal, {}};
    }
    static constexpr FinderFeatureAction copyToFolder() { return {Case::copyToFolder, {}}; }
    static constexpr FinderFeatureAction openInTerminal() { return {Case::openInTerminal, {}}; }
    static constexpr FinderFeatureAction revealInFinder() { return {Case::revealInFinder, {}}; }
    static constexpr FinderFeatureAction openWithApplicationPath() {
        return {Case::openWithApplicationPath, {}};
    }
    static constexpr FinderFeatureAction openFolder() { return {Case::openFolder, {}}; }
    static constexpr FinderFeatureAction finderViewOption() { return {Case::finderViewOption, {}}; }
    static constexpr FinderFeatureAction moveToFolder() { return {Case::moveToFolder, {}}; }
    static constexpr FinderFeatureAction moveSelectionToNewFolder() {
        return {Case::moveSelectionToNewFolder, {}};
    }
    static constexpr FinderFeatureAction requiresSelection() {
        return {Case::requiresSelection, {}};
    }
    static constexpr FinderFeatureAction alwaysEnabled() { return {Case::alwaysEnabled, {}}; }

    [[nodiscard]] constexpr Case actionCase() const { return case_; }

    /// The template of `createFile`, the format of `copyPath`, the application of
    /// `openInApplication`, and nothing for every other case.
    [[nodiscard]] constexpr const Payload& payload() const { return payload_; }

    friend constexpr bool operator==(const FinderFeatureAction&,
                                     const FinderFeatureAction&) = default;

 private:
    constexpr FinderFeatureAction(Case actionCase, Payload payload)
        : case_(actionCase), payload_(payload) {}

    Case case_;
    Payload payload_;
};

/// One command of a feature.
struct FinderFeatureChild {
    FinderFeatureChild(std::string title, std::string actionID, FinderFeatureAction action)
        : actionID(std::move(actionID)), title(std::move(title)), action(action) {}

    /// The stable identifier, unique across the catalogue: the key of the command in the settings,
    /// and what the containing application carries out.
    std::string actionID;
    /// The title in the menu, localised.
    std::string title;
    FinderFeatureAction action;

    friend bool operator==(const FinderFeatureChild&, const FinderFeatureChild&) = default;
};

/// Every feature, in declaration order.
inline constexpr std::array<FinderFeature, 14> allFinderFeatures = {
    FinderFeature::createFile,    FinderFeature::quickOpen,         FinderFeature::copyFile,
    FinderFeature::copyPath,      FinderFeature::openWith,          FinderFeature::viewOptions,
    FinderFeature::customActions, FinderFeature::organizeFile,      FinderFeature::batchRename,
    FinderFeature::archiveTools,  FinderFeature::scheduledDeletion, FinderFeature::imageTools,
    FinderFeature::pdfTools,      FinderFeature::developerTools,
};

/// The identifier of `feature` in the settings files: the name of its case.
[[nodiscard]] std::string_view rawValue(FinderFeature feature);

/// The feature whose raw value is `rawValue`, to the letter. Absent for any other string.
[[nodiscard]] std::optional<FinderFeature> finderFeatureWithRawValue(std::string_view rawValue);

/// The title of `feature` in the menu, localised.
[[nodiscard]] std::string title(FinderFeature feature);

/// The commands of `feature` in catalogue order, a new list at every call. Empty for
/// `customActions`, whose entries are the user's own.
[[nodiscard]] std::vector<FinderFeatureChild> children(FinderFeature feature);

/// The identifiers of the commands of `feature` in catalogue order, without a title being looked
/// up. They live as long as the program.
[[nodiscard]] std::vector<std::string_view> childIDs(FinderFeature feature);

/// Those of them that are on by default.
[[nodiscard]] std::vector<std::string_view> childIDsEnabledByDefault(FinderFeature feature);

}  // namespace quorva
