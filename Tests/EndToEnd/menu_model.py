"""What the extension must show and do, worked out a second time from the settings.

Nothing here shares code or tables with the extension. A menu is a value of the form that the
extension's process returns, so a test compares whole menus.
"""

import collections
import functools
import os
import re
from dataclasses import dataclass, field

from catalogue import (
    ALWAYS, COMMANDS, DEFAULT_ENABLED_COMMANDS, DEFAULT_ENABLED_FEATURES, DEFAULT_FEATURE_ORDER,
    FEATURES, LEGACY_SCHEDULED_DELETION_ORDER, TITLES, WITH_SELECTION, WITH_SELECTION_OR_TARGET)

# The property list of a file that is missing or that can't be used.
UNUSABLE = object()

PRESET_TAG_BASE = 700000

DEFAULT_PRESETS = [
    {"id": "list-modified", "name": "列表 · 最近修改"},
    {"id": "icon-name", "name": "图标 · 按名称"},
    {"id": "column-name", "name": "分栏 · 按名称"},
]

DEFAULT_APPLICATIONS = [
    {"id": "preview", "name": "预览", "path": "/System/Applications/Preview.app"},
    {"id": "textedit", "name": "文本编辑", "path": "/System/Applications/TextEdit.app"},
    {"id": "pages", "name": "Pages", "path": "/Applications/Pages.app"},
    {"id": "numbers", "name": "Numbers", "path": "/Applications/Numbers.app"},
    {"id": "keynote", "name": "Keynote", "path": "/Applications/Keynote.app"},
]

OPEN_WITH_PREFIX = "openWithApplicationPath__"
SHORTCUT_PREFIX = "runShortcut__"
SCRIPT_PREFIX = "runScript__"
PRESET_PREFIX = "finderViewPreset__"


def listed(values):
    """The strings as a list in a line of the diagnostic log."""
    return "[" + ", ".join(f'"{value}"' for value in values) + "]"


def strings(value):
    """The value if it is a list of strings."""
    if isinstance(value, list) and all(isinstance(element, str) for element in value):
        return value
    return None


def string_dictionaries(value):
    """The value if it is a list of dictionaries that hold only strings."""
    if isinstance(value, list) and all(
            isinstance(entry, dict) and all(isinstance(part, str) for part in entry.values())
            for entry in value):
        return value
    return None


@dataclass
class Settings:
    """The four settings files as property lists, and where the extension runs."""

    home: str
    real_home: str
    feature_settings: object = UNUSABLE
    custom_destinations: object = UNUSABLE
    custom_shortcut_actions: object = UNUSABLE
    finder_view_presets: object = UNUSABLE
    translations: dict = field(default_factory=dict)

    def translated(self, key):
        """The translation of a Simplified Chinese string, or that itself where there is none."""
        return self.translations.get(key, key)

    def features(self):
        return MenuSettings(self.feature_settings)

    def has_default_destinations(self, kind):
        """Whether the list of the kind is not the user's own."""
        root = self.custom_destinations
        usable = isinstance(root, dict) and all(
            string_dictionaries(entries) is not None for entries in root.values())
        return not usable or kind not in root

    def destinations(self, kind):
        root = self.custom_destinations
        if self.has_default_destinations(kind):
            return self._default_destinations(kind)
        result = [entry for entry in root[kind]
                  if "id" in entry and "name" in entry and "path" in entry]
        if kind != "openApplication":
            return result
        defaults = self._default_destinations(kind)
        taken_ids = ["vscode", "cursor"] + [entry["id"] for entry in defaults]
        taken_paths = ["/Applications/Visual Studio Code.app", "/Applications/Cursor.app"]
        taken_paths += [entry["path"] for entry in defaults]
        return defaults + [entry for entry in result
                           if entry["id"] not in taken_ids and entry["path"] not in taken_paths]

    def _default_destinations(self, kind):
        folders = [
            {"id": self.translated(title), "name": self.translated(title),
             "path": f"{self.home}/{folder}"}
            for title, folder in (("桌面", "Desktop"), ("下载", "Downloads"), ("文稿", "Documents"))]
        if kind in ("copy", "move"):
            return folders
        if kind == "quickOpen":
            return [
                {"id": "home", "name": self.translated("用户目录"), "path": self.home},
                *folders,
                {"id": "pictures", "name": self.translated("图片"),
                 "path": self.home + "/Pictures"},
                {"id": "applications", "name": self.translated("应用程序"),
                 "path": "/Applications"},
            ]
        return [{**entry, "name": self.translated(entry["name"])}
                for entry in DEFAULT_APPLICATIONS if os.path.exists(entry["path"])]

    def user_destinations(self, kind):
        built_in = [self.real_home + folder for folder in ("/Desktop", "/Downloads", "/Documents")]
        return [entry for entry in self.destinations(kind) if entry["path"] not in built_in]

    def actions(self):
        """The custom actions as (identifier prefix, id, name)."""
        result = []
        for entry in string_dictionaries(self.custom_shortcut_actions) or []:
            if "id" not in entry or "name" not in entry:
                continue
            if entry.get("kind") == "script":
                prefix, runs = SCRIPT_PREFIX, entry.get("scriptPath", "")
            else:
                prefix, runs = SHORTCUT_PREFIX, entry.get("shortcutName", "")
            if runs:
                result.append((prefix, entry["id"], entry["name"]))
        return result

    def presets(self):
        entries = string_dictionaries(self.finder_view_presets)
        if entries is None:
            return [{**preset, "name": self.translated(preset["name"])}
                    for preset in DEFAULT_PRESETS]
        return [{"id": entry["id"], "name": shown_preset_name(entry["name"])}
                for entry in entries
                if all(key in entry for key in ("id", "name", "viewMode", "sortMode"))]


def shown_preset_name(name):
    """The name without the number of a copy."""
    line = "[^\n\v\f\r\u0085\u2028\u2029]"
    match = re.fullmatch(f"({line}+ · {line}+) [0-9]+", name)
    return match[1] if match else name


class MenuSettings:
    """The settings of features as they are shown."""

    def __init__(self, root):
        usable = isinstance(root, dict)
        root = root if usable else {}
        order = strings(root.get("featureOrder")) or []
        enabled_features = strings(root.get("enabledFeatureIDs"))
        saved_commands = root.get("childOrderByFeatureID")
        if not (isinstance(saved_commands, dict) and all(
                strings(ids) is not None for ids in saved_commands.values())):
            saved_commands = {}
        self.features = self._features(enabled_features, order)
        self.command_order = {
            feature: self._command_order(feature, saved_commands.get(feature))
            for feature in TITLES}
        self.enabled = self._enabled(strings(root.get("enabledChildIDs")), saved_commands)
        for feature in self.features:
            if not any(command in self.enabled for command in self.command_order[feature]):
                self.enabled |= set(self.command_order[feature])
        grouped = root.get("groupsFeaturesUnderQuorva")
        self.grouped = grouped if isinstance(grouped, bool) else not usable
        self.layout = "expanded" if root.get("menuLayout") == "expanded" else "collapsed"

    @staticmethod
    def _features(enabled, order):
        if enabled is None:
            return [feature for feature in DEFAULT_FEATURE_ORDER
                    if feature in DEFAULT_ENABLED_FEATURES]
        new = [feature for feature in DEFAULT_ENABLED_FEATURES if feature not in order]
        visible = set(enabled) | (set(new) if order else set())
        known = [feature for feature in order if feature in DEFAULT_FEATURE_ORDER]
        return [feature for feature in dict.fromkeys(known + DEFAULT_FEATURE_ORDER)
                if feature in visible]

    @staticmethod
    def _command_order(feature, saved):
        catalogue = [command[0] for command in COMMANDS[feature]]
        if saved is None:
            return catalogue
        if feature == "scheduledDeletion" and (
                "scheduleDelete1Hour" not in saved or saved == LEGACY_SCHEDULED_DELETION_ORDER):
            return catalogue
        kept = [command for command in saved if command in catalogue]
        return kept + [command for command in catalogue if command not in kept]

    @staticmethod
    def _enabled(saved, saved_commands):
        if saved is None:
            return set(DEFAULT_ENABLED_COMMANDS)
        listed_before = {command for ids in saved_commands.values() for command in ids}
        enabled = set(saved) | (set(DEFAULT_ENABLED_COMMANDS) - listed_before)
        return enabled & {command[0] for commands in COMMANDS.values() for command in commands}

    def commands(self, feature):
        records = {command[0]: command for command in COMMANDS[feature]}
        return [records[command] for command in self.command_order[feature]
                if command in self.enabled]


@dataclass
class Request:
    """What is selected in Finder, and the folder it shows."""

    selected: list = field(default_factory=list)
    targeted: str | None = None

    def enables(self, action):
        case = action.split("(")[0]
        if case in ALWAYS:
            return True
        if case in WITH_SELECTION:
            return bool(self.selected)
        assert case in WITH_SELECTION_OR_TARGET
        return bool(self.selected) or self.targeted is not None


SEPARATOR = {"separator": True}

CATALOGUE_IDS = {command[0] for commands in COMMANDS.values() for command in commands}

# The lists of destinations whose entries have no identifier, by the action of those entries.
DESTINATION_KINDS = {
    "copyFilesToFolder": "copy", "moveFilesToFolder": "move", "quickOpenPath": "quickOpen"}


def identity(entry):
    """What tells one entry from another."""
    return entry["actionID"], entry["destinationPath"]


def plain_item(title, enabled=True, submenu=None):
    item = {
        "title": title, "enabled": enabled, "action": None, "target": None, "keyEquivalent": "",
        "identifier": None, "tag": 0, "representedObject": None,
    }
    if submenu is not None:
        item["submenu"] = {"title": title, "items": submenu}
    return item


def action_item(title, enabled, represented_object, identifier=None, tag=0):
    return {
        "title": title, "enabled": enabled, "action": "performFeatureChild:",
        "target": "FinderSync", "keyEquivalent": "", "identifier": identifier, "tag": tag,
        "representedObject": represented_object,
    }


def context(action_id, title, action, request, destination_path="", preset_id=""):
    return {
        "type": "FinderActionContext", "actionID": action_id, "title": title, "action": action,
        "selectedPaths": request.selected, "targetedPath": request.targeted,
        "destinationPath": destination_path, "presetID": preset_id,
    }


def context_item(action_id, title, action, request, destination_path="", identifier=None):
    always = ("copyFilesToPath", "moveFilesToPath", "copyFilesToFolder", "moveFilesToFolder")
    return action_item(title, action_id in always or request.enables(action),
                       context(action_id, title, action, request, destination_path), identifier)


class MenuBuilder:
    """Builds the menu of a request, and the lines of the diagnostic log that go with it."""

    def __init__(self, settings, request):
        self._settings = settings
        self._request = request
        self._menu_settings = settings.features()
        self.log = []

    def menu(self, kind="items"):
        settings = self._menu_settings
        kinds = {"items": "contextualMenuForItems", "container": "contextualMenuForContainer",
                 "sidebar": "contextualMenuForSidebar", "toolbar": "toolbarItemMenu"}
        target = "nil" if self._request.targeted is None else self._request.targeted
        self.log.append(f"menu kind={kinds[kind]} selected={listed(self._request.selected)}"
                        f" target={target} grouped={'true' if settings.grouped else 'false'}"
                        f" layout={settings.layout}")
        if not settings.features:
            return {"title": "Quorva", "items": [plain_item(
                self._settings.translated("没有已启用功能"), enabled=False)]}
        items = self._expanded() if settings.layout == "expanded" else self._collapsed()
        self._give_tags({"items": items})
        if settings.grouped:
            self.log.append(f"menu grouped under Quorva topLevel=1 submenuItems={len(items)}")
            items = [plain_item("Quorva", submenu=items)]
        else:
            self.log.append(f"menu topLevel={len(items)}")
        return {"title": "Quorva", "items": items}

    def _give_tags(self, menu):
        """Tags the entries that Finder's copy of the menu, without tags, would mix up."""
        items = [item for _, item in actionable_items(menu)]
        shown = collections.Counter(item["title"] for item in items)
        meanings = ClickModel(self._settings)
        tag = 0
        for item in items:
            entry = item["representedObject"]
            meaning = meanings.of_title(item["title"])
            if meaning is None:
                mistakable = shown[item["title"]] > 1
            elif identity(meaning) == identity(entry):
                mistakable = False
            else:
                kind = DESTINATION_KINDS.get(entry["actionID"])
                mistakable = not (
                    meaning["actionID"] in CATALOGUE_IDS and kind is not None
                    and self._settings.has_default_destinations(kind))
            if mistakable and item["tag"] == 0:
                tag += 1
                item["tag"] = tag

    def unified_log(self, kind="items"):
        settings = self._menu_settings
        number = ["items", "container", "sidebar", "toolbar"].index(kind)
        target = "nil" if self._request.targeted is None else self._request.targeted
        grouped = "true" if settings.grouped else "false"
        message = (
            f"Menu requested. kind={number}, selected={len(self._request.selected)},"
            f" targeted={target}, features={len(settings.features)}, grouped={grouped},"
            f" layout={settings.layout}")
        return {"subsystem": "app.ferrolin.Quorva.FinderExtension", "category": "FinderSync",
                "level": "info", "message": message}

    def _expanded(self):
        items = []
        for feature in self._menu_settings.features:
            run = self._run(feature)
            if run and items:
                items.append(SEPARATOR)
            items += run
        return items

    def _collapsed(self):
        items = []
        for feature in self._menu_settings.features:
            run = self._run(feature)
            if run or feature != "customActions":
                items.append(plain_item(self._settings.translated(TITLES[feature]), submenu=run))
        return items

    def _run(self, feature):
        if feature == "quickOpen":
            return self._quick_open()
        if feature == "viewOptions":
            return self._presets()
        if feature == "customActions":
            return [context_item(prefix + action, name, "requiresSelection", self._request,
                                 identifier=prefix + action)
                    for prefix, action, name in self._settings.actions()]
        run = [self._command(command) for command in self._menu_settings.commands(feature)]
        if feature == "openWith":
            run += [context_item("openWithApplicationPath", entry["name"],
                                 "openWithApplicationPath", self._request, entry["path"],
                                 OPEN_WITH_PREFIX + entry["id"])
                    for entry in self._settings.destinations("openApplication")]
        elif feature == "copyFile":
            run += self._destinations("copy", "复制到", "复制到文件夹", "copyFilesToFolder",
                                      "copyToFolder")
        elif feature == "organizeFile":
            run += self._destinations("move", "移动到", "移动到文件夹", "moveFilesToFolder",
                                      "moveToFolder")
        return run

    def _command(self, command):
        action_id, title, action, _ = command
        return context_item(action_id, self._settings.translated(title), action, self._request)

    def _quick_open(self):
        return [
            context_item("quickOpenPath", entry["name"], "openFolder", self._request, entry["path"])
            for entry in self._settings.destinations("quickOpen")
        ] + [
            self._command(command) for command in self._menu_settings.commands("quickOpen")
            if command[0] in ("quickOpenClipboardPath", "quickOpenTypedPath")
        ]

    def _destinations(self, kind, prefix, title, action_id, action):
        entries = self._settings.user_destinations(kind)
        if not entries:
            return []
        prefix = self._settings.translated(prefix)
        return [plain_item(self._settings.translated(title), submenu=[
            context_item(action_id, prefix + entry["name"], action, self._request, entry["path"])
            for entry in entries])]

    def _presets(self):
        presets = self._settings.presets()
        pairs = [preset["id"] + ":" + preset["name"] for preset in presets]
        self.log.append(f"view preset menu presets={listed(pairs)}")
        items = []
        for index, preset in enumerate(presets):
            identifier = PRESET_PREFIX + preset["id"]
            tag = PRESET_TAG_BASE + index
            self.log.append(
                f"view preset item title={preset['name']} actionID={identifier} tag={tag}")
            items.append(action_item(preset["name"], True, {
                "type": "dictionary", "actionID": identifier, "title": preset["name"],
                "selectedPaths": self._request.selected,
                "targetedPath": self._request.targeted or "", "destinationPath": "",
                "presetID": "",
            }, identifier, tag))
        return items


def actionable_items(menu):
    """Every item of a menu that does something, with its index path."""
    for index, item in enumerate(menu["items"]):
        if item.get("action") is not None:
            yield [index], item
        if "submenu" in item:
            for path, inner in actionable_items(item["submenu"]):
                yield [index, *path], inner


@dataclass
class Click:
    """What a click must do: the record it queues, if any, and the lines it logs."""

    record: dict | None
    log: list


class ClickModel:
    """Resolves a clicked item against the settings of the moment and the last menu, if any."""

    def __init__(self, settings, menu=None):
        self._settings = settings
        self._shown = [] if menu is None else [item for _, item in actionable_items(menu)]
        self._log = []

    def click(self, item, request):
        """What a click on `item` does while Finder reports `request`."""
        title = item["title"]
        self._log = ["clicked sender=" + title]
        found = self._delivered(item)
        if found is None:
            self._log.append("missing context for sender=" + title)
            return Click(None, self._log)
        selected = request.selected or found["selectedPaths"]
        targeted = request.targeted if request.targeted is not None else found["targetedPath"]
        self._log.append(
            f"action={found['actionID']} title={found['title']} selected={listed(selected)}"
            f" target={'nil' if targeted is None else targeted}"
            f" destination={found['destinationPath'] or 'nil'}")
        self._log.append("queued action: " + found["actionID"])
        return Click({
            "actionID": found["actionID"], "destinationPath": found["destinationPath"],
            "presetID": found["presetID"], "selectedPaths": selected,
            "targetedPath": targeted or "", "title": found["title"],
        }, self._log)

    def of_title(self, title):
        """What an item means that has nothing but this title."""
        found, log = self._meanings_of_titles.get(title, (None, []))
        self._log += log
        return found

    def _delivered(self, item):
        """What an item means that may be Finder's copy of an entry of the last menu."""
        bare = item.get("representedObject") is None and item.get("identifier") is None
        if not bare:
            return self._resolve(item)
        title, tag = item["title"], item.get("tag", 0)
        same = [shown for shown in self._shown if (shown["title"], shown["tag"]) == (title, tag)]
        if same and (0 < tag < PRESET_TAG_BASE or self._names_another_preset(title, tag)):
            return self._resolve(same[0])
        found = self._resolve(item)
        if found is None:
            destinations = [shown["representedObject"] for shown in self._shown
                            if shown["title"] == title
                            and shown["representedObject"]["actionID"] in DESTINATION_KINDS]
            if len(destinations) == 1:
                return destinations[0]
        return found

    def _names_another_preset(self, title, tag):
        """Whether the tag and the title are those of two presets."""
        names = [preset["name"] for preset in self._settings.presets()]
        index = tag - PRESET_TAG_BASE
        return 0 <= index < len(names) and names[index] != title and title in names

    def _resolve(self, item):
        represented = item.get("representedObject")
        kind = represented["type"] if represented else None
        if kind == "FinderActionContext":
            return represented
        if kind == "dictionary":
            return self._from_dictionary(represented, item["title"])
        return (self._from_identifier(item.get("identifier")) or self._from_tag(item.get("tag", 0))
                or self.of_title(item["title"]))

    @staticmethod
    def _from_dictionary(dictionary, item_title):
        def string(key, otherwise):
            value = dictionary.get(key)
            return value if isinstance(value, str) else otherwise

        action_id = string("actionID", None)
        if action_id is None:
            return None
        request = Request(strings(dictionary.get("selectedPaths")) or [],
                          string("targetedPath", "") or None)
        return context(action_id, string("title", item_title), "copyPath(fullPath)", request,
                       string("destinationPath", ""), string("presetID", ""))

    def _open_with(self, entry):
        return context("openWithApplicationPath", entry["name"], "openWithApplicationPath",
                       Request(), entry["path"])

    def _preset(self, preset):
        return context(PRESET_PREFIX + preset["id"], preset["name"], "finderViewOption", Request(),
                       preset_id=preset["id"])

    def _from_identifier(self, identifier):
        if identifier is None:
            return None
        if identifier.startswith(OPEN_WITH_PREFIX):
            for entry in self._settings.destinations("openApplication"):
                if OPEN_WITH_PREFIX + entry["id"] == identifier:
                    self._log.append(f"resolved open-with app from identifier={identifier}"
                                     f" destination={entry['path']}")
                    return self._open_with(entry)
            return None
        for prefix in (SHORTCUT_PREFIX, SCRIPT_PREFIX):
            if identifier.startswith(prefix):
                for _, action, name in self._settings.actions():
                    if prefix + action == identifier:
                        self._log.append(f"resolved custom action from identifier={identifier}")
                        return context(identifier, name, "requiresSelection", Request())
        for preset in self._settings.presets():
            if PRESET_PREFIX + preset["id"] == identifier:
                self._log.append(f"resolved view preset from identifier={identifier}")
                return self._preset(preset)
        return None

    def _from_tag(self, tag):
        index = tag - PRESET_TAG_BASE
        presets = self._settings.presets()
        if not 0 <= index < len(presets):
            return None
        self._log.append(f"resolved view preset from tag={tag}"
                         f" actionID={PRESET_PREFIX}{presets[index]['id']}")
        return self._preset(presets[index])

    @functools.cached_property
    def _meanings_of_titles(self):
        """Per title what it means, and the line that says how it was found."""
        meanings = {}
        for prefix, action, name in self._settings.actions():
            meanings.setdefault(name, (
                context(prefix + action, name, "requiresSelection", Request()),
                [f"resolved custom action from title={name} actionID={prefix}{action}"]))
        for entry in self._settings.destinations("openApplication"):
            name = entry["name"]
            meanings.setdefault(name, (self._open_with(entry), [
                f"resolved open-with app from title={name} destination={entry['path']}"]))
        for preset in self._settings.presets():
            name = preset["name"]
            meanings.setdefault(name, (self._preset(preset), [
                f"resolved view preset from title={name} actionID={PRESET_PREFIX}{preset['id']}"]))
        for _, _, commands in FEATURES:
            for action_id, title, action, _ in commands:
                title = self._settings.translated(title)
                meanings.setdefault(title, (context(action_id, title, action, Request()), []))
        return meanings
