"""The catalogue of features, written down independently of the extension's own tables."""

# Per feature, in the order of the enumeration: its identifier, its title, and its commands as
# (actionID, title, action, whether it is on by default).
FEATURES = [
    ("createFile", "新建", [
        ("createFolder", "新建文件夹", "createFolder", True),
        ("createTextFile", "新建文本文件", "createFile(text)", True),
        ("createRTFDocument", "新建 RTF 文档", "createFile(rtf)", True),
        ("createMarkdownFile", "新建 Markdown 文件", "createFile(markdown)", True),
        ("createWordDocument", "新建 Word 文档", "createFile(wordDocument)", True),
        ("createExcelSpreadsheet", "新建 Excel 表格", "createFile(excelSpreadsheet)", True),
        ("createPowerPointPresentation", "新建 PowerPoint 演示",
         "createFile(powerPointPresentation)", True),
        ("createPDFDocument", "新建 PDF", "createFile(pdfDocument)", True),
        ("createCSVFile", "新建 CSV 表格", "createFile(csv)", True),
        ("createJSONFile", "新建 JSON 文件", "createFile(json)", False),
        ("createXMLFile", "新建 XML 文件", "createFile(xml)", True),
        ("createYAMLFile", "新建 YAML 文件", "createFile(yaml)", True),
        ("createPNGImage", "新建 PNG 图片", "createFile(pngImage)", True),
        ("createJPEGImage", "新建 JPG 图片", "createFile(jpegImage)", True),
        ("createSwiftFile", "新建 Swift 文件", "createFile(swift)", False),
        ("createReadmeFile", "新建 README", "createFile(readme)", True),
        ("createHTMLFile", "新建 HTML 文件", "createFile(html)", False),
        ("createCSSFile", "新建 CSS 文件", "createFile(css)", False),
        ("createJavaScriptFile", "新建 JavaScript 文件", "createFile(javascript)", False),
        ("createPythonFile", "新建 Python 文件", "createFile(python)", False),
        ("createShellFile", "新建 Shell 脚本", "createFile(shell)", False),
        ("createGitignoreFile", "新建 gitignore", "createFile(gitignore)", False),
    ]),
    ("quickOpen", "打开", [
        ("quickOpenHome", "用户目录", "openFolder", True),
        ("quickOpenDesktop", "桌面", "openFolder", True),
        ("quickOpenDownloads", "下载", "openFolder", True),
        ("quickOpenDocuments", "文稿", "openFolder", True),
        ("quickOpenApplications", "应用程序", "openFolder", True),
        ("quickOpenClipboardPath", "打开剪贴板路径", "openFolder", True),
        ("quickOpenTypedPath", "打开指定路径...", "openFolder", True),
    ]),
    ("copyFile", "复制到", [
        ("copyFilesToDesktop", "复制到桌面", "copyToFolder", True),
        ("copyFilesToDownloads", "复制到下载", "copyToFolder", True),
        ("copyFilesToDocuments", "复制到文稿", "copyToFolder", True),
        ("copyBesideOriginal", "在旁边创建副本", "copyBesideOriginal", True),
    ]),
    ("copyPath", "复制名称与路径", [
        ("copyFullPath", "复制完整路径", "copyPath(fullPath)", True),
        ("copyFileName", "复制文件名", "copyPath(fileName)", True),
        ("copyParentPath", "复制所在文件夹路径", "copyPath(parentPath)", True),
        ("copyShellPath", "复制终端可用路径", "copyPath(shellPath)", True),
        ("copyMarkdownLink", "复制 Markdown 链接", "copyPath(markdownLink)", True),
        ("copyFileNameList", "复制文件名列表", "copyPath(fileNameList)", True),
    ]),
    ("openWith", "用应用打开", [
        ("openInTerminal", "用终端打开", "openInTerminal", False),
        ("revealInFinder", "在 Finder 中显示", "revealInFinder", True),
    ]),
    ("viewOptions", "调整显示方式", [
        ("finderViewPreset", "应用显示方案", "finderViewOption", True),
    ]),
    ("customActions", "自定义动作", [
    ]),
    ("organizeFile", "移动到", [
        ("moveFilesToDesktop", "移动到桌面", "moveToFolder", True),
        ("moveFilesToDownloads", "移动到下载", "moveToFolder", True),
        ("moveFilesToDocuments", "移动到文稿", "moveToFolder", True),
        ("moveSelectionToNewFolder", "把所选项目放入新文件夹", "moveSelectionToNewFolder", True),
    ]),
    ("batchRename", "批量改名", [
        ("renameAddPrefix", "在开头添加文字", "requiresSelection", True),
        ("renameAddSuffix", "在结尾添加文字", "requiresSelection", True),
        ("renameFindReplace", "替换文件名中的文字", "requiresSelection", True),
        ("renameSequential", "按序号重新命名", "requiresSelection", True),
        ("renameLowercase", "文件名改为小写", "requiresSelection", False),
        ("renameUppercase", "文件名改为大写", "requiresSelection", False),
    ]),
    ("archiveTools", "压缩与解压缩", [
        ("compressToZIP", "压缩为 ZIP", "requiresSelection", True),
        ("extractZIPHere", "解压到当前文件夹", "requiresSelection", True),
        ("extractZIPToFolder", "解压到同名文件夹", "requiresSelection", True),
    ]),
    ("scheduledDeletion", "定时清理", [
        ("scheduleDelete1Hour", "1 小时后移到废纸篓", "requiresSelection", True),
        ("scheduleDelete7Days", "7 天后移到废纸篓", "requiresSelection", True),
        ("scheduleDelete30Days", "30 天后移到废纸篓", "requiresSelection", True),
        ("scheduleDelete90Days", "90 天后移到废纸篓", "requiresSelection", True),
    ]),
    ("imageTools", "处理图片", [
        ("convertImageToJPEG", "图片转为 JPEG", "requiresSelection", True),
        ("convertImageToPNG", "图片转为 PNG", "requiresSelection", True),
        ("convertImageToTIFF", "图片转为 TIFF", "requiresSelection", False),
        ("resizeImages", "调整图片大小...", "requiresSelection", True),
        ("compressJPEG", "压缩 JPEG 图片", "requiresSelection", True),
        ("stripImageMetadata", "移除图片元数据", "requiresSelection", False),
    ]),
    ("pdfTools", "处理 PDF", [
        ("mergePDFs", "合并 PDF", "requiresSelection", True),
        ("splitPDFs", "拆分 PDF", "requiresSelection", True),
        ("imagesToPDF", "图片转 PDF", "requiresSelection", True),
        ("compressPDF", "压缩 PDF", "requiresSelection", True),
    ]),
    ("developerTools", "更多工具", [
        ("copySHA256", "复制 SHA-256", "requiresSelection", False),
        ("copyMD5", "复制 MD5", "requiresSelection", False),
        ("copyFileSize", "复制文件大小", "requiresSelection", False),
        ("toggleHiddenFiles", "显示/隐藏隐藏文件", "alwaysEnabled", False),
    ]),
]

TITLES = {feature: title for feature, title, _ in FEATURES}
COMMANDS = {feature: commands for feature, _, commands in FEATURES}

DEFAULT_FEATURE_ORDER = [
    "quickOpen", "createFile", "organizeFile", "copyFile", "batchRename", "archiveTools",
    "scheduledDeletion", "imageTools", "pdfTools", "copyPath", "openWith", "viewOptions",
    "customActions", "developerTools",
]

DEFAULT_ENABLED_FEATURES = [
    "quickOpen", "createFile", "organizeFile", "copyFile", "copyPath", "openWith", "viewOptions",
    "batchRename", "archiveTools", "scheduledDeletion", "imageTools", "pdfTools", "customActions",
]

# Two of them are not commands of the catalogue.
DEFAULT_ENABLED_COMMANDS = [
    command[0] for commands in COMMANDS.values() for command in commands if command[3]
] + ["copyFilesToFolder", "moveFilesToFolder"]

LEGACY_SCHEDULED_DELETION_ORDER = [
    "scheduleDelete7Days", "scheduleDelete30Days", "scheduleDelete90Days", "scheduleDelete1Hour",
]

# What enables an entry, by its action without the payload.
ALWAYS = ["createFile", "createFolder", "openFolder", "finderViewOption", "alwaysEnabled"]
WITH_SELECTION = [
    "copyBesideOriginal", "copyToFolder", "revealInFinder", "moveToFolder",
    "moveSelectionToNewFolder", "requiresSelection",
]
WITH_SELECTION_OR_TARGET = [
    "copyPath", "openInApplication", "openInTerminal", "openWithApplicationPath",
]
