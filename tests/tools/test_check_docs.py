from tree import TreeTest  # first: it makes the tools importable

import check_docs


class CheckDocs(TreeTest):
    def faults(self):
        return check_docs.check(self.root)

    def setUp(self):
        super().setUp()
        self.write("README.md")
        self.write("CONTRIBUTING.md")
        self.write("src/base/text.h")

    def test_paths_from_the_root_and_from_src_exist(self):
        self.write("README.md", "See `src/base/text.h`, `base/text.h`, `src/base/` and `src/*/`.\n")
        self.assertEqual(self.faults(), [])

    def test_a_path_that_is_gone_is_named_with_its_line(self):
        self.write("CONTRIBUTING.md", "# Where\n\nIn `src/base/gone.h` and `src/away/`.\n")
        self.assertEqual(
            self.faults(),
            [
                "CONTRIBUTING.md:3: there is no src/base/gone.h",
                "CONTRIBUTING.md:3: there is no src/away/",
            ],
        )

    def test_a_bare_file_name_counts_by_its_ending(self):
        self.write("README.md", "Read `CONTRIBUTING.md` and `gone.md`, but not `gone`.\n")
        self.assertEqual(self.faults(), ["README.md:1: there is no gone.md"])

    def test_an_ending_by_itself_is_no_file(self):
        self.write("README.md", "A `.cpp` file.\n")
        self.assertEqual(self.faults(), [])

    def test_each_word_of_a_command_is_looked_at(self):
        self.write("README.md", "Run `./gone test`.\n")
        self.assertEqual(self.faults(), ["README.md:1: there is no ./gone"])

    def test_a_pattern_that_matches_nothing_is_a_fault(self):
        self.write("README.md", "Each `src/*/CMakeLists.txt`.\n")
        self.assertEqual(self.faults(), ["README.md:1: there is no src/*/CMakeLists.txt"])

    def test_pages_of_the_docs_count_and_may_point_beside_themselves(self):
        self.write("docs/page.md", "![floors](floors.svg) and [gone](gone.svg), `src/base/text.h`\n")
        self.write("docs/floors.svg")
        self.assertEqual(self.faults(), ["docs/page.md:1: there is no gone.svg"])

    def test_what_stands_outside_the_tree_or_is_built_is_left_alone(self):
        self.write(
            "README.md",
            "`/usr/bin/env`, `~/.local/share`, `$HOME/x`, `build/dev/bin/velarc`, `--output=a/b`,"
            " `https://example.org/a.md`, `<folder>/CMakeLists.txt`\n",
        )
        self.assertEqual(self.faults(), [])

    def test_code_blocks_are_left_alone(self):
        self.write("README.md", "```sh\n`src/gone.h`\n```\n`src/away.h`\n")
        self.assertEqual(self.faults(), ["README.md:4: there is no src/away.h"])

    def test_relative_links_exist(self):
        self.write(
            "README.md",
            "[a](CONTRIBUTING.md#build) [b](#here) [c](https://example.org/x) [d](docs/gone.md)\n",
        )
        self.assertEqual(self.faults(), ["README.md:1: there is no docs/gone.md"])

    def test_a_document_that_is_gone_is_a_fault(self):
        (self.root / "CONTRIBUTING.md").unlink()
        self.assertEqual(self.faults(), ["there is no CONTRIBUTING.md"])
