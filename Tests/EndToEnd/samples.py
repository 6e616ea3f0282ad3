"""Settings with all four kinds of user data, whose titles all differ."""

CUSTOM_DESTINATIONS = {
    "copy": [
        {"id": "c1", "name": "项目", "path": "/Volumes/Work/项目"},
        {"id": "c2", "name": "Archive 2024", "path": "/Volumes/Archive"},
    ],
    "move": [
        {"id": "m1", "name": "收件箱", "path": "/Volumes/Work/Inbox"},
        {"id": "m2", "name": "Done", "path": "relative/done"},
    ],
    "quickOpen": [
        {"id": "q1", "name": "源代码", "path": "/Volumes/Work/Sources"},
        {"id": "q2", "name": "Screenshots", "path": "/Volumes/Screens"},
    ],
    "openApplication": [
        {"id": "zed", "name": "Zed", "path": "/Applications/Zed.app"},
        {"id": "my__editor", "name": "我的编辑器", "path": "/Volumes/Work/Editor.app"},
    ],
}

CUSTOM_SHORTCUT_ACTIONS = [
    {"id": "resize", "name": "缩小图片", "kind": "shortcut", "shortcutName": "Resize",
     "scriptPath": ""},
    {"id": "deploy", "name": "Deploy", "kind": "script", "shortcutName": "",
     "scriptPath": "/Volumes/Work/deploy.sh"},
]

FINDER_VIEW_PRESETS = [
    {"id": "list-size", "name": "列表 · 大小", "viewMode": "list", "sortMode": "size"},
    {"id": "icon-kind", "name": "图标 · 种类 2", "viewMode": "icon", "sortMode": "kind"},
]

ALL_FEATURES = [
    "quickOpen", "createFile", "organizeFile", "copyFile", "batchRename", "archiveTools",
    "scheduledDeletion", "imageTools", "pdfTools", "copyPath", "openWith", "viewOptions",
    "customActions", "developerTools",
]


def feature_settings(layout="collapsed", grouped=False, **others):
    return {"enabledFeatureIDs": ALL_FEATURES, "menuLayout": layout,
            "groupsFeaturesUnderQuorva": grouped, **others}


def user_data():
    """The three files of user data, as `Home.settings` takes them."""
    return {
        "custom_destinations": CUSTOM_DESTINATIONS,
        "custom_shortcut_actions": CUSTOM_SHORTCUT_ACTIONS,
        "finder_view_presets": FINDER_VIEW_PRESETS,
    }
