"""Several processes of the extension at once: the system starts more for Open and Save panels."""

import collections
import threading
import unittest

from menu_model import Request
from quorva_process import EndToEndTestCase

PROCESSES = 4
CLICKS = 200


class SeveralProcessesTest(EndToEndTestCase):

    def setUp(self):
        super().setUp()
        self.extensions = [self.start_extension() for _ in range(PROCESSES)]
        for extension in self.extensions:
            extension.request("toolbar")
        self.home.new_log_messages()

    def click_at_once(self, title, length):
        """Clicks, from all processes, on items whose titles differ; returns the titles."""
        titles = [[f"{title}{process}-{click} " + str(process) * length for click in range(CLICKS)]
                  for process in range(PROCESSES)]

        def click(extension, own_titles):
            for own_title in own_titles:
                extension.send({"title": own_title, "representedObject": {
                    "type": "dictionary", "actionID": "a", "title": own_title}}, Request(["/a"]))

        threads = [threading.Thread(target=click, args=arguments)
                   for arguments in zip(self.extensions, titles)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        return [own_title for own_titles in titles for own_title in own_titles]

    def test_each_line_of_the_log_that_they_share_is_whole(self):
        titles = self.click_at_once("click ", 300)
        # A process that meets another's line half written begins with a line feed, which leaves an
        # empty line.
        lines = collections.Counter(
            message.rstrip("\n") for message in self.home.new_log_messages())
        expected = collections.Counter({"queued action: a": len(titles)})
        for title in titles:
            expected["clicked sender=" + title] += 1
            expected[f'action=a title={title} selected=["/a"] target=nil destination=nil'] += 1
        self.assertEqual(list((lines - expected))[:3], [], "lines that nobody wrote")
        self.assertEqual(list((expected - lines))[:3], [], "lines that are missing")

    def test_each_click_leaves_its_record(self):
        titles = self.click_at_once("click ", 1)
        self.assertEqual(sorted(record["title"] for record in self.home.records()), sorted(titles))


if __name__ == "__main__":
    unittest.main()
