"""The protocol of the extension's process: one JSON object per line, in and out."""

import json
import os
import random
import re
import resource
import signal
import subprocess
import time
import unittest
from pathlib import Path

from menu_model import Request
from quorva_process import (
    EXTENSION_EXECUTABLE, FINDER_VIEW_PRESETS, TIME_LIMIT, EndToEndTestCase,
    application_bundle, containing_applications, end_containing_application, item_at,
    program_environment, until)

SIGNALS = (signal.SIGTERM, signal.SIGINT)


REFUSED_LINES = {
    "an empty line": b"",
    "blanks": b"   \t ",
    "text": b"menu",
    "a number": b"12",
    "a string": b'"menu"',
    "null": b"null",
    "an array": b"[]",
    "an array with an object": b'[{"id":1,"request":"toolbar"}]',
    "an object without its end": b'{"id":1,"request":"toolbar"',
    "two objects": b'{"id":1,"request":"toolbar"} {"id":2,"request":"toolbar"}',
    "a comma at the end": b'{"id":1,"request":"toolbar",}',
    "single quotes": b"{'id':1,'request':'toolbar'}",
    "a comment": b'{"id":1,"request":"toolbar"} // toolbar',
    "bytes that are not UTF-8": bytes(range(0x80, 0x100)),
    "control characters": b"\x00\x01\x02\x03",
    "a zero byte behind an object": b'{"id":1,"request":"toolbar"}\x00',
    "a string with a byte that is not UTF-8": b'{"id":1,"request":"menu\xff"}',
    "a string with half a surrogate pair": b'{"id":1,"request":"\\ud800"}',
    "a property list": b'<?xml version="1.0"?><plist><dict/></plist>',
    "an unclosed text of a megabyte": b'"' + b"x" * (1 << 20),
    "a megabyte of junk": b"\xfe" * (1 << 20),
    "three million arrays in one another": b"[" * 3_000_000 + b"]" * 3_000_000,
    "three million arrays without their ends": b"[" * 3_000_000,
    "100,000 objects in one another": b'{"id":' * 100_000 + b"1" + b"}" * 100_000,
}

REFUSED_REQUESTS = [
    {},
    {"request": None},
    {"request": 1},
    {"request": ["menu"]},
    {"request": {}},
    {"request": ""},
    {"request": "Menu"},
    {"request": "menu "},
    {"request": "quit"},
    {"request": "menu", "kind": "desktop"},
    {"request": "menu", "kind": ""},
    {"request": "menu", "kind": 0},
    {"request": "menu", "kind": ["items"]},
    {"request": "menu", "kind": "items", "selectedPaths": "/a"},
    {"request": "menu", "kind": "items", "selectedPaths": {"0": "/a"}},
    {"request": "menu", "kind": "items", "selectedPaths": 1},
    {"request": "menu", "kind": "items", "selectedPaths": ["/a", 1]},
    {"request": "menu", "kind": "items", "selectedPaths": ["/a", None]},
    {"request": "menu", "kind": "items", "selectedPaths": [["/a"]]},
    {"request": "menu", "kind": "items", "selectedPaths": [], "targetedPath": 1},
    {"request": "menu", "kind": "items", "selectedPaths": [], "targetedPath": ["/a"]},
    {"request": "menu", "kind": "items", "selectedPaths": [], "targetedPath": {}},
    {"request": "menu", "kind": "items", "selectedPaths": [], "targetedPath": False},
    {"request": "click"},
    {"request": "click", "indexPath": None},
    {"request": "click", "indexPath": 0},
    {"request": "click", "indexPath": "0"},
    {"request": "click", "indexPath": {}},
    {"request": "click", "indexPath": []},
    {"request": "click", "indexPath": ["0"]},
    {"request": "click", "indexPath": [0.5]},
    {"request": "click", "indexPath": [None]},
    {"request": "click", "indexPath": [-1]},
    {"request": "click", "indexPath": [1000]},
    {"request": "click", "indexPath": [0, 1000]},
    {"request": "click", "indexPath": [0, 0, 0, 0, 0]},
    {"request": "click", "indexPath": [2**63 - 1]},
    {"request": "click", "indexPath": [2**64 - 1]},
    {"request": "click", "indexPath": [2**70]},
    {"request": "click", "indexPath": [0, 0, 0], "delivery": "xpc"},
    {"request": "click", "indexPath": [0, 0, 0], "delivery": 1},
    {"request": "click", "indexPath": [0, 0, 0], "delivery": []},
    {"request": "click", "indexPath": [0, 0, 0], "selectedPaths": "/a"},
    {"request": "click", "indexPath": [0, 0, 0], "targetedPath": 1},
    {"request": "send"},
    {"request": "send", "item": None},
    {"request": "send", "item": []},
    {"request": "send", "item": "title"},
    {"request": "send", "item": {}},
    {"request": "send", "item": {"title": 1}},
    {"request": "send", "item": {"title": None}},
    {"request": "send", "item": {"title": "a", "identifier": 1}},
    {"request": "send", "item": {"title": "a", "tag": "1"}},
    {"request": "send", "item": {"title": "a", "tag": 1.5}},
    {"request": "send", "item": {"title": "a", "tag": 2**63}},
    {"request": "send", "item": {"title": "a", "tag": -(2**63) - 1}},
    {"request": "send", "item": {"title": "a", "representedObject": "text"}},
    {"request": "send", "item": {"title": "a", "representedObject": []}},
    {"request": "send", "item": {"title": "a", "representedObject": {}}},
    {"request": "send", "item": {"title": "a", "representedObject": {"type": 1}}},
    {"request": "send", "item": {"title": "a", "representedObject": {"type": "NSMenu"}}},
    {"request": "send", "item": {"title": "a", "representedObject": {
        "type": "FinderActionContext"}}},
    {"request": "send", "item": {"title": "a", "representedObject": {
        "type": "FinderActionContext", "actionID": 1, "title": "", "action": "openFolder",
        "selectedPaths": [], "targetedPath": None, "destinationPath": "", "presetID": ""}}},
    {"request": "send", "item": {"title": "a", "representedObject": {
        "type": "FinderActionContext", "actionID": "a", "title": "", "action": "flyAway",
        "selectedPaths": [], "targetedPath": None, "destinationPath": "", "presetID": ""}}},
    {"request": "send", "item": {"title": "a", "representedObject": {
        "type": "FinderActionContext", "actionID": "a", "title": "", "action": "copyPath",
        "selectedPaths": [], "targetedPath": None, "destinationPath": "", "presetID": ""}}},
    {"request": "send", "item": {"title": "a"}, "selectedPaths": [1]},
    {"request": "wait"},
    {"request": "wait", "seconds": "1"},
    {"request": "wait", "seconds": None},
    {"request": "wait", "seconds": [1]},
    {"request": "wait", "seconds": -0.1},
    {"request": "wait", "seconds": 60.1},
    {"request": "wait", "seconds": 1e300},
    {"request": "menu", "kind": "items", "selectedPaths": ["/" + "x" * 4095]},
    {"request": "menu", "kind": "items", "selectedPaths": ["/" + "x" * (16 << 20)]},
    {"request": "menu", "kind": "items", "targetedPath": "/" + "x" * 4095},
    {"request": "menu", "kind": "items", "targetedPath": "/" + "x" * (16 << 20)},
    {"request": "send", "item": {"title": "a", "representedObject": {
        "type": "FinderActionContext", "actionID": "a", "action": "openFolder",
        "selectedPaths": ["/" + "x" * (16 << 20)]}}},
]

IDS = [0, -1, 2**53, -(2**63), 2**64 - 1, "", "one", "文件 📁 \u0000 \n \" \\"]

REFUSED_IDS = [None, True, 1.5, 2**64, -(2**63) - 1, [], [1], {}, {"id": 1}]


def item_of(menu, path):
    for index in path:
        item = menu["items"][index]
        menu = item.get("submenu")
    return item


class ProtocolTestCase(EndToEndTestCase):

    def assert_error(self, answer):
        self.assertIsInstance(answer["error"], str)
        self.assertNotEqual(answer["error"].strip(), "")
        self.assertNotIn("\n", answer["error"])


class AnswersTest(ProtocolTestCase):

    def test_every_request_is_answered_with_its_events_and_its_unified_log(self):
        extension = self.start_extension()
        for request, member in [
                ({"request": "directories"}, "directories"),
                ({"request": "toolbar"}, "name"),
                ({"request": "wait", "seconds": 0}, "events"),
                ({"request": "menu", "kind": "items", "selectedPaths": ["/a"],
                  "targetedPath": None}, "menu"),
                ({"request": "click", "indexPath": [0, 0, 0], "selectedPaths": ["/a"],
                  "targetedPath": "/b"}, "events"),
                ({"request": "send", "item": {"title": "新建文件夹"}, "selectedPaths": [],
                  "targetedPath": None}, "events"),
        ]:
            with self.subTest(request=request):
                answer = extension.answer({"id": 7, **request})
                self.assertIn(member, answer)
                self.assertNotIn("error", answer)
                self.assertEqual(answer["id"], 7)
                self.assertIsInstance(answer["events"], list)
                self.assertIsInstance(answer["unifiedLog"], list)

    def test_the_toolbar_item_has_its_name_and_tool_tip(self):
        answer = self.start_extension().request("toolbar")
        self.assertEqual(answer["name"], "Quorva")
        self.assertEqual(answer["toolTip"], "Send selected files to Quorva")

    def test_the_id_comes_back(self):
        extension = self.start_extension()
        for value in IDS:
            with self.subTest(id=value):
                answer = extension.answer({"id": value, "request": "toolbar"})
                self.assertEqual(json.dumps(answer["id"]), json.dumps(value))

    def test_the_id_comes_back_with_an_error_too(self):
        extension = self.start_extension()
        for value in IDS:
            with self.subTest(id=value):
                answer = extension.answer({"id": value, "request": "fly"})
                self.assertEqual(json.dumps(answer["id"]), json.dumps(value))
                self.assert_error(answer)

    def test_the_id_comes_back_whichever_other_number_is_out_of_range(self):
        extension = self.start_extension()
        for number in ("1e999", "-1e999", "1.5E+999", "1e99999999999999999999", "1" * 400):
            for line in (f'{{"id":"1e999 \\" 2e999","request":"wait","seconds":{number}}}',
                         f'{{"seconds":[{number},{number}],"id":"1e999 \\" 2e999"}}'):
                with self.subTest(line=line):
                    extension.send_line(line)
                    answer = extension.read_response()
                    self.assertEqual(answer["id"], '1e999 " 2e999')
                    self.assertIn("out of range", answer["error"])

    def test_an_id_that_is_not_a_string_or_an_integer_of_64_bits_is_refused(self):
        extension = self.start_extension()
        for value in REFUSED_IDS:
            with self.subTest(id=value):
                answer = extension.answer({"id": value, "request": "toolbar"})
                self.assertIsNone(answer["id"])
                self.assert_error(answer)

    def test_requests_that_arrive_together_are_answered_in_their_order(self):
        extension = self.start_extension()
        names = ["toolbar", "directories", "fly", "toolbar", "menu", "wait"]
        fields = {"menu": {"kind": "items", "selectedPaths": [], "targetedPath": None},
                  "wait": {"seconds": 0}}
        requests = [{"id": number, "request": name, **fields.get(name, {})}
                    for number, name in enumerate(names * 4)]
        extension.send_bytes(b"".join(json.dumps(request).encode() + b"\n" for request in requests))
        for request in requests:
            answer = extension.read_response()
            self.assertEqual(answer["id"], request["id"])
            self.assertEqual("error" in answer, request["request"] == "fly")

    def test_a_request_may_arrive_in_pieces(self):
        extension = self.start_extension()
        for piece in (b'{"id', b'":1,"req', b'uest":"tool', b'bar"}', b"\n"):
            extension.send_bytes(piece)
        self.assertEqual(extension.read_response()["name"], "Quorva")

    def test_an_answer_is_one_line_of_text(self):
        extension = self.start_extension()
        extension.send_line(json.dumps({
            "id": "a\nb\u2028c", "request": "menu", "kind": "items",
            "selectedPaths": ["/a\nb", "/é", "/\u2028", "/📁"], "targetedPath": "/x\ty"}))
        line = extension.read_line()
        self.assertEqual(json.loads(line.decode("utf-8"))["id"], "a\nb\u2028c")

    def test_the_answer_to_a_request_does_not_repeat_the_events_before(self):
        extension = self.start_extension()
        extension.menu()
        self.assertNotEqual(extension.click([0, 0, 0])["events"], [])
        answer = extension.request("toolbar")
        self.assertEqual((answer["events"], answer["unifiedLog"]), ([], []))

    def test_the_first_answer_tells_what_happened_at_the_start(self):
        answer = self.start_extension().request("toolbar")
        self.assertEqual(answer["events"], [])
        count = len(self.start_extension().request("directories")["directories"])
        self.assertEqual(answer["unifiedLog"], [{
            "subsystem": "app.ferrolin.Quorva.FinderExtension", "category": "FinderSync",
            "level": "info",
            "message": f"FinderSync refreshed directories. reason=started, count={count}"}])


class RefusalsTest(ProtocolTestCase):

    def test_a_line_that_is_no_json_object_is_answered_with_an_error_and_no_id(self):
        extension = self.start_extension()
        for name, line in REFUSED_LINES.items():
            with self.subTest(line=name):
                extension.send_line(line)
                answer = extension.read_response()
                self.assertIsNone(answer["id"])
                self.assert_error(answer)
                self.assertEqual(extension.request("toolbar")["name"], "Quorva")

    def test_an_unknown_request_or_a_field_of_the_wrong_type_is_answered_with_an_error(self):
        extension = self.start_extension()
        extension.menu()
        for request in REFUSED_REQUESTS:
            with self.subTest(request=request):
                answer = extension.answer({"id": "the id", **request})
                self.assertEqual(answer["id"], "the id")
                self.assert_error(answer)
        self.assertEqual(self.home.records(), [])
        self.assertEqual(extension.request("toolbar")["name"], "Quorva")

    def test_a_click_before_the_first_menu_is_answered_with_an_error(self):
        extension = self.start_extension()
        answer = extension.answer({"id": 1, "request": "click", "indexPath": [0],
                                   "selectedPaths": [], "targetedPath": None})
        self.assert_error(answer)
        self.assertEqual(self.home.records(), [])

    def test_a_refused_request_does_nothing(self):
        extension = self.start_extension()
        extension.request("toolbar")
        self.home.new_log_messages()
        for request in REFUSED_REQUESTS:
            extension.answer({"id": 1, **request})
        answer = extension.request("toolbar")
        self.assertEqual((answer["events"], answer["unifiedLog"]), ([], []))
        self.assertEqual(self.home.new_log_messages(), [])

    def test_a_refused_menu_request_leaves_the_last_menu_in_place(self):
        extension = self.start_extension()
        menu = extension.menu()
        extension.answer({"id": 1, "request": "menu", "kind": "desktop"})
        extension.click(item_at(menu, "Quorva", "新建", "新建文件夹"))
        self.assertEqual([record["actionID"] for record in self.home.records()], ["createFolder"])

    def test_a_request_of_four_megabytes_is_granted(self):
        extension = self.start_extension()
        answer = extension.answer({"id": "x" * (4 << 20), "request": "toolbar"})
        self.assertEqual(answer["name"], "Quorva")
        self.assertEqual(len(answer["id"]), 4 << 20)


class LimitsTest(ProtocolTestCase):

    def test_a_path_of_the_greatest_length_is_granted(self):
        extension = self.start_extension()
        longest = "/" + "x" * 4094
        menu = extension.menu(Request([longest], longest))
        self.assertEqual(item_of(menu, [0, 0, 0])["representedObject"]["selectedPaths"], [longest])

    def test_nesting_up_to_the_limit_is_granted_and_beyond_it_refused(self):
        extension = self.start_extension()
        for depth in (512, 513):
            with self.subTest(depth=depth):
                arrays = "[" * (depth - 1) + "]" * (depth - 1)
                extension.send_line('{"id":1,"request":"toolbar","x":' + arrays + "}")
                self.assertEqual("error" in extension.read_response(), depth > 512)


class DeliveryTest(ProtocolTestCase):

    def test_a_click_delivered_by_finder_keeps_title_and_tag_and_loses_the_rest(self):
        self.home.write(FINDER_VIEW_PRESETS, [
            {"id": id, "name": "同名", "viewMode": "list", "sortMode": "size"} for id in "ab"])
        extension = self.start_extension()
        menu = extension.menu()
        first = item_at(menu, "Quorva", "调整显示方式", "同名")
        for offset, preset in enumerate("ab"):
            path = [*first[:-1], first[-1] + offset]
            self.assertEqual(item_of(menu, path)["tag"], 700000 + offset)
            extension.click(path, delivery="finder")
            [record] = self.home.take_records()
            # Resolved anew, and not from what the item represents.
            self.assertEqual(record["presetID"], preset)


class SignalTest(ProtocolTestCase):

    def test_a_signal_ends_the_process_at_once_while_it_waits_for_a_line(self):
        for number in SIGNALS:
            with self.subTest(signal=number):
                extension = self.start_mortal_extension()
                extension.request("toolbar")
                extension.process.send_signal(number)
                self.assertEqual(extension.process.wait(TIME_LIMIT), -number)

    def test_a_signal_ends_the_process_at_once_while_a_request_waits(self):
        for number in SIGNALS:
            with self.subTest(signal=number):
                extension = self.start_mortal_extension()
                extension.request("toolbar")
                extension.send_line('{"id":1,"request":"wait","seconds":60}')
                extension.process.send_signal(number)
                self.assertEqual(extension.process.wait(TIME_LIMIT), -number)

    def test_a_signal_ends_the_process_at_any_moment_of_its_start(self):
        started = time.monotonic()
        self.start_extension().request("toolbar")
        duration = time.monotonic() - started
        for index in range(40):
            number = SIGNALS[index % 2]
            extension = self.start_mortal_extension()
            time.sleep(random.uniform(0, duration))
            extension.process.send_signal(number)
            self.assertEqual(extension.process.wait(TIME_LIMIT), -number)

    def test_the_process_ignores_and_blocks_no_more_for_the_application_it_launches(self):
        extension = self.start_extension(launch=True)
        self.addCleanup(end_containing_application, application_bundle())
        extension.send({"title": "新建文件夹"})
        [application] = until(lambda: containing_applications(application_bundle()),
                              "the application runs")
        status = Path(f"/proc/{application}/status").read_text(encoding="ascii")
        masks = dict(re.findall(r"^(Sig\w+):\s*(\w+)$", status, re.MULTILINE))
        broken_pipe = 1 << (signal.SIGPIPE - 1)
        self.assertEqual(int(masks["SigBlk"], 16), 0)
        self.assertEqual(int(masks["SigIgn"], 16) & broken_pipe, 0)


class LaunchTest(ProtocolTestCase):

    def test_a_launch_without_a_thread_fails_at_once_and_later_answers_do_not_wait_for_it(self):
        soft, hard = resource.getrlimit(resource.RLIMIT_STACK)
        if hard != resource.RLIM_INFINITY:
            self.skipTest("the limit of a thread's stack can't be raised here")
        # A thread's stack is as large as this, which no address space holds.
        resource.setrlimit(resource.RLIMIT_STACK, (1 << 60, hard))
        try:
            extension = self.start_extension()
        finally:
            resource.setrlimit(resource.RLIMIT_STACK, (soft, hard))
        extension.request("toolbar")
        self.home.new_log_messages()
        started = time.monotonic()
        extension.send({"title": "新建文件夹"})
        self.assertTrue(any(message.startswith("failed to open app: ")
                            for message in self.home.new_log_messages()))
        extension.request("toolbar")
        # An answer waits up to 20 seconds for a launch that does not end.
        self.assertLess(time.monotonic() - started, 20)


class StandardStreamsTest(ProtocolTestCase):

    def test_standard_output_that_does_not_block_gets_every_answer(self):
        reader, writer = os.pipe()
        os.set_blocking(writer, False)
        process = subprocess.Popen(
            [application_bundle() / EXTENSION_EXECUTABLE], stdin=subprocess.PIPE, stdout=writer,
            stderr=subprocess.DEVNULL, env=program_environment(self.home))
        os.close(writer)
        with open(reader, "rb") as output, process:
            for number in range(3):
                # Several times what a pipe holds.
                request = {"id": str(number) * (1 << 20), "request": "toolbar"}
                process.stdin.write(json.dumps(request).encode() + b"\n")
                process.stdin.flush()
                self.assertEqual(json.loads(output.readline())["id"], request["id"])
            process.stdin.close()
            self.assertEqual(process.wait(TIME_LIMIT), 0)

    def test_a_closed_standard_stream_at_the_start_is_an_error(self):
        for stream in (0, 1, 2):
            with self.subTest(stream=stream):
                result = subprocess.run(
                    ["sh", "-c", f'exec "$0" {stream}>&-',
                        application_bundle() / EXTENSION_EXECUTABLE],
                    stdin=subprocess.DEVNULL, capture_output=True, timeout=TIME_LIMIT,
                    env=program_environment(self.home))
                self.assertEqual((result.returncode, result.stdout), (1, b""))
                if stream != 2:
                    self.assertEqual(result.stderr, (
                        b"QuorvaFinderExtension: standard input, standard output and standard"
                        b" error must be open\n"))

    def test_an_answer_that_nobody_can_read_ends_the_process_with_status_1_and_a_line(self):
        extension = self.start_mortal_extension()
        extension.request("toolbar")
        extension.process.stdout.close()
        extension.send_line('{"id":1,"request":"toolbar"}')
        self.assertEqual(extension.process.wait(TIME_LIMIT), 1)
        self.assertTrue(extension.standard_error().endswith(
            "\nQuorvaFinderExtension: an answer could not be written: Broken pipe\n"))


class EndOfInputTest(EndToEndTestCase):

    def test_the_end_of_input_ends_the_process_with_status_0(self):
        extension = self.start_mortal_extension()
        extension.request("toolbar")
        self.assertEqual(extension.close(), 0)

    def test_the_end_of_input_before_the_first_request_ends_the_process_with_status_0(self):
        self.assertEqual(self.start_mortal_extension().close(), 0)

    def test_requests_before_the_end_of_input_are_still_answered(self):
        extension = self.start_mortal_extension()
        extension.send_bytes(b'{"id":1,"request":"toolbar"}\n{"id":2,"request":"toolbar"}\n')
        extension.process.stdin.close()
        self.assertEqual([extension.read_response()["id"] for _ in range(2)], [1, 2])
        self.assertIsNone(extension.read_line())

    def test_nothing_but_answers_is_written_to_standard_output(self):
        extension = self.start_mortal_extension()
        extension.send_bytes(b'{"id":1,"request":"toolbar"}\nnonsense\n')
        extension.process.stdin.close()
        lines = []
        while (line := extension.read_line()) is not None:
            lines.append(json.loads(line))
        self.assertEqual([line["id"] for line in lines], [1, None])

    def test_the_console_lines_go_to_standard_error(self):
        extension = self.start_extension()
        extension.send({"title": "nothing is called this"})
        self.assertIn("QuorvaFinderExtension: missing context for sender=nothing is called this",
                      extension.standard_error())


if __name__ == "__main__":
    unittest.main()
