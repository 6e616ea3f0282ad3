#include "QuorvaFinderExtension/FinderFeature.hpp"

#include <algorithm>
#include <set>

#include "Tests/Unit/UnitTest.hpp"

namespace quorva {
namespace {

using FinderFeatureTest = UnitTest;

struct FeatureRow {
    FinderFeature feature;
    std::string_view rawValue;
    std::string_view title;
    std::size_t childCount;
};

constexpr FeatureRow featureTable[] = {
    {FinderFeature::createFile, "createFile", "新建", 22},
    {FinderFeature::quickOpen, "quickOpen", "打开", 7},
    {FinderFeature::copyFile, "copyFile", "复制到", 4},
    {FinderFeature::copyPath, "copyPath", "复制名称与路径", 6},
    {FinderFeature::openWith, "openWith", "用应用打开", 2},
    {FinderFeature::viewOptions, "viewOptions", "调整显示方式", 1},
    {FinderFeature::customActions, "customActions", "自定义动作", 0},
    {FinderFeature::organizeFile, "organizeFile", "移动到", 4},
    {FinderFeature::batchRename, "batchRename", "批量改名", 6},
    {FinderFeature::archiveTools, "archiveTools", "压缩与解压缩", 3},
    {FinderFeature::scheduledDeletion, "scheduledDeletion", "定时清理", 4},
    {FinderFeature::imageTools, "imageTools", "处理图片", 6},
    {FinderFeature::pdfTools, "pdfTools", "处理 PDF", 4},
    {FinderFeature::developerTools, "developerTools", "更多工具", 4},
};

struct ChildRow {
    FinderFeature feature;
    std::string_view actionID;
    std::string_view title;
    FinderFeatureAction action;
};

/// Every command in catalogue order.
constexpr ChildRow catalogue[] = {
    {FinderFeature::createFile, "createFolder", "新建文件夹", FinderFeatureAction::createFolder()},
    {FinderFeature::createFile, "createTextFile", "新建文本文件",
     FinderFeatureAction::createFile(FinderFileTemplate::text)},
    {FinderFeature::createFile, "createRTFDocument", "新建 RTF 文档",
     FinderFeatureAction::createFile(FinderFileTemplate::rtf)},
    {FinderFeature::createFile, "createMarkdownFile", "新建 Markdown 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::markdown)},
    {FinderFeature::createFile, "createWordDocument", "新建 Word 文档",
     FinderFeatureAction::createFile(FinderFileTemplate::wordDocument)},
    {FinderFeature::createFile, "createExcelSpreadsheet", "新建 Excel 表格",
     FinderFeatureAction::createFile(FinderFileTemplate::excelSpreadsheet)},
    {FinderFeature::createFile, "createPowerPointPresentation", "新建 PowerPoint 演示",
     FinderFeatureAction::createFile(FinderFileTemplate::powerPointPresentation)},
    {FinderFeature::createFile, "createPDFDocument", "新建 PDF",
     FinderFeatureAction::createFile(FinderFileTemplate::pdfDocument)},
    {FinderFeature::createFile, "createCSVFile", "新建 CSV 表格",
     FinderFeatureAction::createFile(FinderFileTemplate::csv)},
    {FinderFeature::createFile, "createJSONFile", "新建 JSON 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::json)},
    {FinderFeature::createFile, "createXMLFile", "新建 XML 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::xml)},
    {FinderFeature::createFile, "createYAMLFile", "新建 YAML 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::yaml)},
    {FinderFeature::createFile, "createPNGImage", "新建 PNG 图片",
     FinderFeatureAction::createFile(FinderFileTemplate::pngImage)},
    {FinderFeature::createFile, "createJPEGImage", "新建 JPG 图片",
     FinderFeatureAction::createFile(FinderFileTemplate::jpegImage)},
    {FinderFeature::createFile, "createSwiftFile", "新建 Swift 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::swift)},
    {FinderFeature::createFile, "createReadmeFile", "新建 README",
     FinderFeatureAction::createFile(FinderFileTemplate::readme)},
    {FinderFeature::createFile, "createHTMLFile", "新建 HTML 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::html)},
    {FinderFeature::createFile, "createCSSFile", "新建 CSS 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::css)},
    {FinderFeature::createFile, "createJavaScriptFile", "新建 JavaScript 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::javascript)},
    {FinderFeature::createFile, "createPythonFile", "新建 Python 文件",
     FinderFeatureAction::createFile(FinderFileTemplate::python)},
    {FinderFeature::createFile, "createShellFile", "新建 Shell 脚本",
     FinderFeatureAction::createFile(FinderFileTemplate::shell)},
    {FinderFeature::createFile, "createGitignoreFile", "新建 gitignore",
     FinderFeatureAction::createFile(FinderFileTemplate::gitignore)},
    {FinderFeature::quickOpen, "quickOpenHome", "用户目录", FinderFeatureAction::openFolder()},
    {FinderFeature::quickOpen, "quickOpenDesktop", "桌面", FinderFeatureAction::openFolder()},
    {FinderFeature::quickOpen, "quickOpenDownloads", "下载", FinderFeatureAction::openFolder()},
    {FinderFeature::quickOpen, "quickOpenDocuments", "文稿", FinderFeatureAction::openFolder()},
    {FinderFeature::quickOpen, "quickOpenApplications", "应用程序",
     FinderFeatureAction::openFolder()},
    {FinderFeature::quickOpen, "quickOpenClipboardPath", "打开剪贴板路径",
     FinderFeatureAction::openFolder()},
    {FinderFeature::quickOpen, "quickOpenTypedPath", "打开指定路径...",
     FinderFeatureAction::openFolder()},
    {FinderFeature::copyFile, "copyFilesToDesktop", "复制到桌面",
     FinderFeatureAction::copyToFolder()},
    {FinderFeature::copyFile, "copyFilesToDownloads", "复制到下载",
     FinderFeatureAction::copyToFolder()},
    {FinderFeature::copyFile, "copyFilesToDocuments", "复制到文稿",
     FinderFeatureAction::copyToFolder()},
    {FinderFeature::copyFile, "copyBesideOriginal", "在旁边创建副本",
     FinderFeatureAction::copyBesideOriginal()},
    {FinderFeature::copyPath, "copyFullPath", "复制完整路径",
     FinderFeatureAction::copyPath(FinderPathCopyFormat::fullPath)},
    {FinderFeature::copyPath, "copyFileName", "复制文件名",
     FinderFeatureAction::copyPath(FinderPathCopyFormat::fileName)},
    {FinderFeature::copyPath, "copyParentPath", "复制所在文件夹路径",
     FinderFeatureAction::copyPath(FinderPathCopyFormat::parentPath)},
    {FinderFeature::copyPath, "copyShellPath", "复制终端可用路径",
     FinderFeatureAction::copyPath(FinderPathCopyFormat::shellPath)},
    {FinderFeature::copyPath, "copyMarkdownLink", "复制 Markdown 链接",
     FinderFeatureAction::copyPath(FinderPathCopyFormat::markdownLink)},
    {FinderFeature::copyPath, "copyFileNameList", "复制文件名列表",
     FinderFeatureAction::copyPath(FinderPathCopyFormat::fileNameList)},
    {FinderFeature::openWith, "openInTerminal", "用终端打开",
     FinderFeatureAction::openInTerminal()},
    {FinderFeature::openWith, "revealInFinder", "在 Finder 中显示",
     FinderFeatureAction::revealInFinder()},
    {FinderFeature::viewOptions, "finderViewPreset", "应用显示方案",
     FinderFeatureAction::finderViewOption()},
    {FinderFeature::organizeFile, "moveFilesToDesktop", "移动到桌面",
     FinderFeatureAction::moveToFolder()},
    {FinderFeature::organizeFile, "moveFilesToDownloads", "移动到下载",
     FinderFeatureAction::moveToFolder()},
    {FinderFeature::organizeFile, "moveFilesToDocuments", "移动到文稿",
     FinderFeatureAction::moveToFolder()},
    {FinderFeature::organizeFile, "moveSelectionToNewFolder", "把所选项目放入新文件夹",
     FinderFeatureAction::moveSelectionToNewFolder()},
    {FinderFeature::batchRename, "renameAddPrefix", "在开头添加文字",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::batchRename, "renameAddSuffix", "在结尾添加文字",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::batchRename, "renameFindReplace", "替换文件名中的文字",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::batchRename, "renameSequential", "按序号重新命名",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::batchRename, "renameLowercase", "文件名改为小写",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::batchRename, "renameUppercase", "文件名改为大写",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::archiveTools, "compressToZIP", "压缩为 ZIP",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::archiveTools, "extractZIPHere", "解压到当前文件夹",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::archiveTools, "extractZIPToFolder", "解压到同名文件夹",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::scheduledDeletion, "scheduleDelete1Hour", "1 小时后移到废纸篓",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::scheduledDeletion, "scheduleDelete7Days", "7 天后移到废纸篓",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::scheduledDeletion, "scheduleDelete30Days", "30 天后移到废纸篓",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::scheduledDeletion, "scheduleDelete90Days", "90 天后移到废纸篓",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::imageTools, "convertImageToJPEG", "图片转为 JPEG",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::imageTools, "convertImageToPNG", "图片转为 PNG",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::imageTools, "convertImageToTIFF", "图片转为 TIFF",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::imageTools, "resizeImages", "调整图片大小...",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::imageTools, "compressJPEG", "压缩 JPEG 图片",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::imageTools, "stripImageMetadata", "移除图片元数据",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::pdfTools, "mergePDFs", "合并 PDF", FinderFeatureAction::requiresSelection()},
    {FinderFeature::pdfTools, "splitPDFs", "拆分 PDF", FinderFeatureAction::requiresSelection()},
    {FinderFeature::pdfTools, "imagesToPDF", "图片转 PDF",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::pdfTools, "compressPDF", "压缩 PDF", FinderFeatureAction::requiresSelection()},
    {FinderFeature::developerTools, "copySHA256", "复制 SHA-256",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::developerTools, "copyMD5", "复制 MD5",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::developerTools, "copyFileSize", "复制文件大小",
     FinderFeatureAction::requiresSelection()},
    {FinderFeature::developerTools, "toggleHiddenFiles", "显示/隐藏隐藏文件",
     FinderFeatureAction::alwaysEnabled()},
};

static_assert(std::size(featureTable) == 14);
static_assert(std::size(catalogue) == 73);

TEST_F(FinderFeatureTest, EnumerationHoldsEveryFeatureInDeclarationOrder) {
    ASSERT_EQ(allFinderFeatures.size(), std::size(featureTable));
    for (std::size_t index = 0; index < allFinderFeatures.size(); ++index) {
        EXPECT_EQ(allFinderFeatures.at(index), featureTable[index].feature);
    }
}

TEST_F(FinderFeatureTest, RawValueIsTheNameOfTheCase) {
    for (const FeatureRow& row : featureTable) {
        EXPECT_EQ(rawValue(row.feature), row.rawValue);
        EXPECT_EQ(finderFeatureWithRawValue(row.rawValue), row.feature);
    }
}

TEST_F(FinderFeatureTest, UnknownRawValueYieldsNoFeature) {
    for (const std::string_view text :
         {"DeveloperTools", "", "createFil", "createFiles", " createFile", "createFile ", "新建",
          "createFolder", "copyBesideOriginal", "quorva"}) {
        EXPECT_EQ(finderFeatureWithRawValue(text), std::nullopt) << text;
    }
    using std::string_view_literals::operator""sv;
    EXPECT_EQ(finderFeatureWithRawValue("createFile\0"sv), std::nullopt);
}

TEST_F(FinderFeatureTest, TitlesAreTheChineseTextsByteForByte) {
    for (const FeatureRow& row : featureTable) {
        EXPECT_EQ(title(row.feature), row.title);
    }
}

TEST_F(FinderFeatureTest, TitlesAreLookedUpInTheStringTableAtEachCall) {
    platform().translations["处理 PDF"] = "Process PDF";
    EXPECT_EQ(title(FinderFeature::pdfTools), "Process PDF");
    platform().translations.clear();
    EXPECT_EQ(title(FinderFeature::pdfTools), "处理 PDF");
}

TEST_F(FinderFeatureTest, CatalogueHoldsEveryChildInOrder) {
    const auto* row = std::begin(catalogue);
    for (const FeatureRow& feature : featureTable) {
        const std::vector<FinderFeatureChild> featureChildren = children(feature.feature);
        EXPECT_EQ(featureChildren.size(), feature.childCount) << feature.rawValue;
        for (const FinderFeatureChild& child : featureChildren) {
            ASSERT_NE(row, std::end(catalogue));
            EXPECT_EQ(row->feature, feature.feature);
            EXPECT_EQ(child.actionID, row->actionID);
            EXPECT_EQ(child.title, row->title);
            EXPECT_EQ(child.action, row->action) << row->actionID;
            ++row;
        }
    }
    EXPECT_EQ(row, std::end(catalogue));
}

TEST_F(FinderFeatureTest, ChildIDsAreThoseOfTheChildren) {
    for (const FinderFeature feature : allFinderFeatures) {
        std::vector<std::string_view> expected;
        for (const ChildRow& row : catalogue) {
            if (row.feature == feature) {
                expected.push_back(row.actionID);
            }
        }
        EXPECT_EQ(childIDs(feature), expected);
    }
}

TEST_F(FinderFeatureTest, ChildTitlesAreLookedUpInTheStringTable) {
    platform().translations["新建 JPG 图片"] = "New JPG Image";
    const std::vector<FinderFeatureChild> featureChildren = children(FinderFeature::createFile);
    EXPECT_EQ(featureChildren.at(13).title, "New JPG Image");
    EXPECT_EQ(featureChildren.at(13).actionID, "createJPEGImage");
    EXPECT_EQ(featureChildren.at(12).title, "新建 PNG 图片");
}

TEST_F(FinderFeatureTest, ActionIDsAreUniqueAcrossTheCatalogue) {
    std::set<std::string> ids;
    for (const FinderFeature feature : allFinderFeatures) {
        for (const FinderFeatureChild& child : children(feature)) {
            EXPECT_TRUE(ids.insert(child.actionID).second) << child.actionID;
        }
    }
    EXPECT_EQ(ids.size(), 73U);
}

TEST_F(FinderFeatureTest, ChildrenAreComparedByEveryField) {
    const auto action = FinderFeatureAction::createFolder();
    expectEveryFieldCounts<FinderFeatureChild>(
        {"t", "i", action},
        {{"x", "i", action}, {"t", "x", action}, {"t", "i", FinderFeatureAction::openFolder()}});
}

TEST_F(FinderFeatureTest, OnlyToggleHiddenFilesIsAlwaysEnabled) {
    for (const FinderFeature feature : allFinderFeatures) {
        for (const FinderFeatureChild& child : children(feature)) {
            EXPECT_EQ(child.action == FinderFeatureAction::alwaysEnabled(),
                      child.actionID == "toggleHiddenFiles");
        }
    }
}

TEST_F(FinderFeatureTest, NoChildOpensInAnApplicationByNameOrPath) {
    for (const FinderFeature feature : allFinderFeatures) {
        for (const FinderFeatureChild& child : children(feature)) {
            EXPECT_NE(child.action.actionCase(), FinderFeatureAction::Case::openInApplication);
            EXPECT_NE(child.action.actionCase(),
                      FinderFeatureAction::Case::openWithApplicationPath);
        }
    }
}

TEST_F(FinderFeatureTest, ChildrenAreANewListAtEachCall) {
    std::vector<FinderFeatureChild> first = children(FinderFeature::pdfTools);
    first.clear();
    EXPECT_EQ(children(FinderFeature::pdfTools).size(), 4U);
}

TEST(FinderFeatureActionTest, OnlyTheFirstThreeCasesCarryAPayload) {
    using Payload = FinderFeatureAction::Payload;
    EXPECT_EQ(FinderFeatureAction::createFile(FinderFileTemplate::gitignore).payload(),
              Payload(FinderFileTemplate::gitignore));
    EXPECT_EQ(FinderFeatureAction::copyPath(FinderPathCopyFormat::fileNameList).payload(),
              Payload(FinderPathCopyFormat::fileNameList));
    EXPECT_EQ(FinderFeatureAction::openInApplication(FinderApplication::cursor).payload(),
              Payload(FinderApplication::cursor));
    for (const FinderFeatureAction action :
         {FinderFeatureAction::createFolder(), FinderFeatureAction::copyBesideOriginal(),
          FinderFeatureAction::copyToFolder(), FinderFeatureAction::openInTerminal(),
          FinderFeatureAction::revealInFinder(), FinderFeatureAction::openWithApplicationPath(),
          FinderFeatureAction::openFolder(), FinderFeatureAction::finderViewOption(),
          FinderFeatureAction::moveToFolder(), FinderFeatureAction::moveSelectionToNewFolder(),
          FinderFeatureAction::requiresSelection(), FinderFeatureAction::alwaysEnabled()}) {
        EXPECT_EQ(action.payload(), Payload());
    }
}

TEST(FinderFeatureActionTest, CasesAreDeclaredInTheirOrder) {
    using Case = FinderFeatureAction::Case;
    const FinderFeatureAction actions[] = {
        FinderFeatureAction::createFile(FinderFileTemplate::text),
        FinderFeatureAction::copyPath(FinderPathCopyFormat::fullPath),
        FinderFeatureAction::openInApplication(FinderApplication::visualStudioCode),
        FinderFeatureAction::createFolder(),
        FinderFeatureAction::copyBesideOriginal(),
        FinderFeatureAction::copyToFolder(),
        FinderFeatureAction::openInTerminal(),
        FinderFeatureAction::revealInFinder(),
        FinderFeatureAction::openWithApplicationPath(),
        FinderFeatureAction::openFolder(),
        FinderFeatureAction::finderViewOption(),
        FinderFeatureAction::moveToFolder(),
        FinderFeatureAction::moveSelectionToNewFolder(),
        FinderFeatureAction::requiresSelection(),
        FinderFeatureAction::alwaysEnabled(),
    };
    ASSERT_EQ(std::size(actions), 15U);
    for (std::size_t index = 0; index < std::size(actions); ++index) {
        EXPECT_EQ(actions[index].actionCase(), static_cast<Case>(index));
    }
}

TEST(FinderFeatureActionTest, PayloadsTellActionsOfOneCaseApart) {
    EXPECT_EQ(FinderFeatureAction::createFile(FinderFileTemplate::text),
              FinderFeatureAction::createFile(FinderFileTemplate::text));
    EXPECT_FALSE(FinderFeatureAction::createFile(FinderFileTemplate::text) ==
                 FinderFeatureAction::createFile(FinderFileTemplate::rtf));
    EXPECT_FALSE(FinderFeatureAction::copyToFolder() == FinderFeatureAction::moveToFolder());
}

}  // namespace
}  // namespace quorva
