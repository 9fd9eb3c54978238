from tree import TreeTest  # first: it makes the tools importable

import check_includes


class CheckIncludes(TreeTest):
    def faults(self):
        return check_includes.check(self.root)

    def test_a_folder_may_include_itself_and_the_floors_below_it(self):
        self.write("src/base/text.h")
        self.write("src/actions/action.h", '#include "base/text.h"\n')
        self.write("src/actions/action.cpp", '#include "actions/action.h"\n#include <QString>\n')
        self.assertEqual(self.faults(), [])

    def test_a_folder_may_not_include_a_floor_above_it(self):
        self.write("src/actions/action.h")
        self.write("src/base/text.h", '#pragma once\n\n#include "actions/action.h"\n')
        self.assertEqual(
            self.faults(),
            ["src/base/text.h:3: base must not include actions/action.h: actions stands above"],
        )

    def test_neighbouring_floors_keep_their_order_too(self):
        self.write("src/engines/engine.h")
        self.write("src/intake/clipboard.cpp", '#include "engines/engine.h"\n')
        self.assertEqual(
            self.faults(),
            [
                "src/intake/clipboard.cpp:1: intake must not include engines/engine.h:"
                " engines stands above"
            ],
        )

    def test_a_file_in_a_folder_that_is_no_floor_is_a_fault(self):
        self.write("src/helpers/odd.h")
        self.write("src/odd.cpp")
        self.assertEqual(
            [line.split(": ")[0] for line in self.faults()], ["src/helpers/odd.h:1", "src/odd.cpp:1"]
        )

    def test_files_that_include_each_other_are_a_circle(self):
        self.write("src/base/a.h", '#include "base/b.h"\n')
        self.write("src/base/b.h", '#include "base/c.h"\n')
        self.write("src/base/c.h", '#include "base/a.h"\n')
        self.assertEqual(
            self.faults(),
            ["circle: src/base/a.h -> src/base/b.h -> src/base/c.h -> src/base/a.h"],
        )

    def test_two_ways_to_one_header_are_no_circle(self):
        self.write("src/base/a.h", '#include "base/b.h"\n#include "base/c.h"\n')
        self.write("src/base/b.h", '#include "base/c.h"\n')
        self.write("src/base/c.h")
        self.assertEqual(self.faults(), [])

    def test_our_headers_are_included_by_their_path_from_src(self):
        self.write("src/base/text.h")
        self.write("src/base/text.cpp", '#include "text.h"\n')
        self.write("src/base/json.cpp", '#include "../base/text.h"\n')
        self.assertEqual(
            self.faults(),
            [
                'src/base/json.cpp:1: "../base/text.h" is no path from src/',
                'src/base/text.cpp:1: "text.h" is no path from src/',
            ],
        )

    def test_our_headers_are_included_in_quotes(self):
        self.write("src/base/text.h")
        self.write("src/base/text.cpp", "#include <base/text.h>\n")
        self.assertEqual(
            self.faults(), ["src/base/text.cpp:1: <base/text.h> is ours: include it in quotes"]
        )

    def test_what_moc_makes_may_be_included(self):
        self.write("src/run/app_state.cpp", '#include "app_state.moc"\n#include "moc_state.cpp"\n')
        self.assertEqual(self.faults(), [])

    def test_tests_include_from_src_and_from_tests(self):
        self.write("src/base/text.h")
        self.write("tests/fakes/fake.h")
        self.write("tests/base/a_test.cpp", '#include "fakes/fake.h"\n#include "base/text.h"\n')
        self.write("tests/base/b_test.cpp", '#include "fake.h"\n')
        self.assertEqual(
            self.faults(), ['tests/base/b_test.cpp:1: "fake.h" is no path from src/']
        )

    def test_tests_include_what_stands_beside_them_by_its_bare_name(self):
        self.write("tests/run/fixture.h")
        self.write("tests/run/run_test.cpp", '#include "fixture.h"\n')
        self.write("tests/base/text_test.cpp", '#include "../run/fixture.h"\n')
        self.assertEqual(
            self.faults(),
            ['tests/base/text_test.cpp:1: "../run/fixture.h" is no path from src/'],
        )

    def test_code_that_ships_does_not_include_from_tests(self):
        self.write("tests/fakes/fake.h")
        self.write("src/base/text.cpp", '#include "fakes/fake.h"\n')
        self.assertEqual(
            self.faults(), ['src/base/text.cpp:1: "fakes/fake.h" is no path from src/']
        )

    def test_qml_headers_stay_in_the_top_floors(self):
        for header in ("QQmlEngine", "QtQuick/QQuickItem", "qqml.h", "QJSValue", "QCoroQml"):
            with self.subTest(header):
                self.write("src/run/app_state.h", f"#include <{header}>\n")
                self.assertEqual(
                    self.faults(),
                    [f"src/run/app_state.h:1: <{header}>: QML stays in ui and entry"],
                )

    def test_qml_headers_may_stand_in_the_top_floors(self):
        self.write("src/ui/icons.h", "#include <QQuickImageProvider>\n")
        self.write("src/entry/velarc_main.cpp", "#include <QQmlApplicationEngine>\n")
        self.assertEqual(self.faults(), [])

    def test_json_headers_are_no_qml_headers(self):
        self.write("src/store/store.cpp", "#include <QJsonDocument>\n#include <qjsonvalue.h>\n")
        self.assertEqual(self.faults(), [])

    def test_glib_headers_stay_out_of_our_headers(self):
        for header in ("glib.h", "gio/gio.h", "libsecret/secret.h", "libecal/libecal.h", "cairo.h"):
            with self.subTest(header):
                self.write("src/intake/pdf.h", f"#include <{header}>\n")
                self.assertEqual(
                    self.faults(),
                    [f"src/intake/pdf.h:1: <{header}>: GLib's family stays in .cpp files"],
                )
        for header in ("librsvg/rsvg.h", "pango/pangocairo.h", "poppler-document.h"):
            with self.subTest(header):
                self.write("src/intake/pdf.h", f"#include <{header}>\n")
                self.assertEqual(len(self.faults()), 1)

    def test_glib_headers_may_stand_in_a_cpp_file(self):
        self.write("src/intake/pdf.cpp", "#include <gio/gio.h>\n#include <cairo.h>\n")
        self.assertEqual(self.faults(), [])

    def test_the_build_lists_the_floors_in_their_order(self):
        self.write(
            "src/CMakeLists.txt",
            "add_subdirectory(base)\nadd_subdirectory(engines)\nadd_subdirectory(store)\n",
        )
        self.assertEqual(
            self.faults(), ["src/CMakeLists.txt:3: store stands below the floor before it"]
        )
