#include "QuorvaFinderExtension/FinderFeature.hpp"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "QuorvaFinderExtension/L10n.hpp"
#include "QuorvaFinderExtension/RawValue.hpp"

namespace quorva {

namespace {

using Action = FinderFeatureAction;

/// Whether a command is on by default.
enum class Default { off, on };
using enum Default;

/// A command before its title is localised: the title is the key of the lookup.
struct Command {
    std::string_view actionID;
    std::string_view title;
    FinderFeatureAction action;
    Default enabled;
};

constexpr Command createFileCommands[] = {
    {"createFolder", "新建文件夹", Action::createFolder(), on},
    {"createTextFile", "新建文本文件", Action::createFile(FinderFileTemplate::text), on},
    {"createRTFDocument", "新建 RTF 文档", Action::createFile(FinderFileTemplate::rtf), on},
    {"createMarkdownFile", "新建 Markdown 文件", Action::createFile(FinderFileTemplate::markdown),
     on},
    {"createWordDocument", "新建 Word 文档", Action::createFile(FinderFileTemplate::wordDocument),
     on},
    {"createExcelSpreadsheet", "新建 Excel 表格",
     Action::createFile(FinderFileTemplate::excelSpreadsheet), on},
    {"createPowerPointPresentation", "新建 PowerPoint 演示",
     Action::createFile(FinderFileTemplate::powerPointPresentation), on},
    {"createPDFDocument", "新建 PDF", Action::createFile(FinderFileTemplate::pdfDocument), on},
    {"createCSVFile", "新建 CSV 表格", Action::createFile(FinderFileTemplate::csv), on},
    {"createJSONFile", "新建 JSON 文件", Action::createFile(FinderFileTemplate::json), off},
    {"createXMLFile", "新建 XML 文件", Action::createFile(FinderFileTemplate::xml), on},
    {"createYAMLFile", "新建 YAML 文件", Action::createFile(FinderFileTemplate::yaml), on},
    {"createPNGImage", "新建 PNG 图片", Action::createFile(FinderFileTemplate::pngImage), on},
    {"createJPEGImage", "新建 JPG 图片", Action::createFile(FinderFileTemplate::jpegImage), on},
    {"createSwiftFile", "新建 Swift 文件", Action::createFile(FinderFileTemplate::swift), off},
    {"createReadmeFile", "新建 README", Action::createFile(FinderFileTemplate::readme), on},
    {"createHTMLFile", "新建 HTML 文件", Action::createFile(FinderFileTemplate::html), off},
    {"createCSSFile", "新建 CSS 文件", Action::createFile(FinderFileTemplate::css), off},
    {"createJavaScriptFile", "新建 JavaScript 文件",
     Action::createFile(FinderFileTemplate::javascript), off},
    {"createPythonFile", "新建 Python 文件", Action::createFile(FinderFileTemplate::python), off},
    {"createShellFile", "新建 Shell 脚本", Action::createFile(FinderFileTemplate::shell), off},
    {"createGitignoreFile", "新建 gitignore", Action::createFile(FinderFileTemplate::gitignore),
     off},
};

constexpr Command quickOpenCommands[] = {
    {"quickOpenHome", "用户目录", Action::openFolder(), on},
    {"quickOpenDesktop", "桌面", Action::openFolder(), on},
    {"quickOpenDownloads", "下载", Action::openFolder(), on},
    {"quickOpenDocuments", "文稿", Action::openFolder(), on},
    {"quickOpenApplications", "应用程序", Action::openFolder(), on},
    {"quickOpenClipboardPath", "打开剪贴板路径", Action::openFolder(), on},
    {"quickOpenTypedPath", "打开指定路径...", Action::openFolder(), on},
};

constexpr Command copyFileCommands[] = {
    {"copyFilesToDesktop", "复制到桌面", Action::copyToFolder(), on},
    {"copyFilesToDownloads", "复制到下载", Action::copyToFolder(), on},
    {"copyFilesToDocuments", "复制到文稿", Action::copyToFolder(), on},
    {"copyBesideOriginal", "在旁边创建副本", Action::copyBesideOriginal(), on},
};

constexpr Command copyPathCommands[] = {
    {"copyFullPath", "复制完整路径", Action::copyPath(FinderPathCopyFormat::fullPath), on},
    {"copyFileName", "复制文件名", Action::copyPath(FinderPathCopyFormat::fileName), on},
    {"copyParentPath", "复制所在文件夹路径", Action::copyPath(FinderPathCopyFormat::parentPath),
     on},
    {"copyShellPath", "复制终端可用路径", Action::copyPath(FinderPathCopyFormat::shellPath), on},
    {"copyMarkdownLink", "复制 Markdown 链接", Action::copyPath(FinderPathCopyFormat::markdownLink),
     on},
    {"copyFileNameList", "复制文件名列表", Action::copyPath(FinderPathCopyFormat::fileNameList),
     on},
};

constexpr Command openWithCommands[] = {
    {"openInTerminal", "用终端打开", Action::openInTerminal(), off},
    {"revealInFinder", "在 Finder 中显示", Action::revealInFinder(), on},
};

constexpr Command viewOptionsCommands[] = {
    {"finderViewPreset", "应用显示方案", Action::finderViewOption(), on},
};

constexpr Command organizeFileCommands[] = {
    {"moveFilesToDesktop", "移动到桌面", Action::moveToFolder(), on},
    {"moveFilesToDownloads", "移动到下载", Action::moveToFolder(), on},
    {"moveFilesToDocuments", "移动到文稿", Action::moveToFolder(), on},
    {"moveSelectionToNewFolder", "把所选项目放入新文件夹", Action::moveSelectionToNewFolder(), on},
};

constexpr Command batchRenameCommands[] = {
    {"renameAddPrefix", "在开头添加文字", Action::requiresSelection(), on},
    {"renameAddSuffix", "在结尾添加文字", Action::requiresSelection(), on},
    {"renameFindReplace", "替换文件名中的文字", Action::requiresSelection(), on},
    {"renameSequential", "按序号重新命名", Action::requiresSelection(), on},
    {"renameLowercase", "文件名改为小写", Action::requiresSelection(), off},
    {"renameUppercase", "文件名改为大写", Action::requiresSelection(), off},
};

constexpr Command archiveToolsCommands[] = {
    {"compressToZIP", "压缩为 ZIP", Action::requiresSelection(), on},
    {"extractZIPHere", "解压到当前文件夹", Action::requiresSelection(), on},
    {"extractZIPToFolder", "解压到同名文件夹", Action::requiresSelection(), on},
};

constexpr Command scheduledDeletionCommands[] = {
    {"scheduleDelete1Hour", "1 小时后移到废纸篓", Action::requiresSelection(), on},
    {"scheduleDelete7Days", "7 天后移到废纸篓", Action::requiresSelection(), on},
    {"scheduleDelete30Days", "30 天后移到废纸篓", Action::requiresSelection(), on},
    {"scheduleDelete90Days", "90 天后移到废纸篓", Action::requiresSelection(), on},
};

constexpr Command imageToolsCommands[] = {
    {"convertImageToJPEG", "图片转为 JPEG", Action::requiresSelection(), on},
    {"convertImageToPNG", "图片转为 PNG", Action::requiresSelection(), on},
    {"convertImageToTIFF", "图片转为 TIFF", Action::requiresSelection(), off},
    {"resizeImages", "调整图片大小...", Action::requiresSelection(), on},
    {"compressJPEG", "压缩 JPEG 图片", Action::requiresSelection(), on},
    {"stripImageMetadata", "移除图片元数据", Action::requiresSelection(), off},
};

constexpr Command pdfToolsCommands[] = {
    {"mergePDFs", "合并 PDF", Action::requiresSelection(), on},
    {"splitPDFs", "拆分 PDF", Action::requiresSelection(), on},
    {"imagesToPDF", "图片转 PDF", Action::requiresSelection(), on},
    {"compressPDF", "压缩 PDF", Action::requiresSelection(), on},
};

constexpr Command developerToolsCommands[] = {
    {"copySHA256", "复制 SHA-256", Action::requiresSelection(), off},
    {"copyMD5", "复制 MD5", Action::requiresSelection(), off},
    {"copyFileSize", "复制文件大小", Action::requiresSelection(), off},
    {"toggleHiddenFiles", "显示/隐藏隐藏文件", Action::alwaysEnabled(), off},
};

struct FeatureEntry {
    std::string_view rawValue;
    std::string_view title;
    std::span<const Command> commands;
};

constexpr FeatureEntry entry(FinderFeature feature) {
    switch (feature) {
        case FinderFeature::createFile:
            return {"createFile", "新建", createFileCommands};
        case FinderFeature::quickOpen:
            return {"quickOpen", "打开", quickOpenCommands};
        case FinderFeature::copyFile:
            return {"copyFile", "复制到", copyFileCommands};
        case FinderFeature::copyPath:
            return {"copyPath", "复制名称与路径", copyPathCommands};
        case FinderFeature::openWith:
            return {"openWith", "用应用打开", openWithCommands};
        case FinderFeature::viewOptions:
            return {"viewOptions", "调整显示方式", viewOptionsCommands};
        case FinderFeature::customActions:
            return {"customActions", "自定义动作", {}};
        case FinderFeature::organizeFile:
            return {"organizeFile", "移动到", organizeFileCommands};
        case FinderFeature::batchRename:
            return {"batchRename", "批量改名", batchRenameCommands};
        case FinderFeature::archiveTools:
            return {"archiveTools", "压缩与解压缩", archiveToolsCommands};
        case FinderFeature::scheduledDeletion:
            return {"scheduledDeletion", "定时清理", scheduledDeletionCommands};
        case FinderFeature::imageTools:
            return {"imageTools", "处理图片", imageToolsCommands};
        case FinderFeature::pdfTools:
            return {"pdfTools", "处理 PDF", pdfToolsCommands};
        case FinderFeature::developerTools:
            return {"developerTools", "更多工具", developerToolsCommands};
    }
    std::unreachable();
}

}  // namespace

std::string_view rawValue(FinderFeature feature) {
    return entry(feature).rawValue;
}

std::optional<FinderFeature> finderFeatureWithRawValue(std::string_view rawValue) {
    return caseWithRawValue(allFinderFeatures, rawValue);
}

std::string title(FinderFeature feature) {
    return L10n::t(entry(feature).title);
}

std::vector<FinderFeatureChild> children(FinderFeature feature) {
    const std::span<const Command> commands = entry(feature).commands;
    std::vector<FinderFeatureChild> children;
    children.reserve(commands.size());
    for (const Command& command : commands) {
        children.emplace_back(L10n::t(command.title), std::string(command.actionID),
                              command.action);
    }
    return children;
}

std::vector<std::string_view> childIDs(FinderFeature feature) {
    std::vector<std::string_view> ids;
    std::ranges::transform(entry(feature).commands, std::back_inserter(ids), &Command::actionID);
    return ids;
}

std::vector<std::string_view> childIDsEnabledByDefault(FinderFeature feature) {
    std::vector<std::string_view> ids;
    for (const Command& command : entry(feature).commands) {
        if (command.enabled == on) {
            ids.push_back(command.actionID);
        }
    }
    return ids;
}

}  // namespace quorva
