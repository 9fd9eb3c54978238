from tree import TreeTest  # first: it makes the tools importable

import check_sizes


class CheckSizes(TreeTest):
    def faults(self):
        return check_sizes.check(self.root)

    def lines(self, name, count):
        self.write(name, "\n" * count)

    def test_files_at_their_limit_pass(self):
        self.lines("src/base/text.cpp", 400)
        self.lines("src/base/text.h", 150)
        self.lines("src/ui/Home.qml", 300)
        self.assertEqual(self.faults(), [])

    def test_files_above_their_limit_are_named_with_their_lengths(self):
        self.lines("src/base/text.cpp", 401)
        self.lines("src/base/text.h", 151)
        self.lines("src/ui/Home.qml", 301)
        self.assertEqual(
            self.faults(),
            [
                "src/base/text.cpp: 401 lines, 400 at most",
                "src/base/text.h: 151 lines, 150 at most",
                "src/ui/Home.qml: 301 lines, 300 at most",
            ],
        )

    def test_the_list_of_published_fields_may_be_long(self):
        self.lines("src/run/app_state.h", 600)
        self.lines("src/run/other.h", 600)
        self.assertEqual(self.faults(), ["src/run/other.h: 600 lines, 150 at most"])
