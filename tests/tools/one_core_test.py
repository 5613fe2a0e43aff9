"""The program and the library of its windows use the core's definitions: one_core_test.py CORE PROGRAM LIBRARY."""

import subprocess
import sys
import unittest


def definitions(file):
    """The functions and variables of ours in a file; what several files may define is not among them.

    A linker may hide those of a program, which are of a lower-case kind then, and add names with a dollar sign."""
    lines = subprocess.run(["nm", "--defined-only", file], capture_output=True, text=True, check=True).stdout.splitlines()
    symbols = (line.split()[1:] for line in lines)
    return {name for kind, name in symbols
            if kind in "TDBRtdbr" and name.startswith("_ZN8kestrova")
            and "_GLOBAL__N_" not in name and "$" not in name}


class OneCore(unittest.TestCase):
    core = program = library = None

    def test_the_core_defines_what_is_below_the_windows(self):
        names = definitions(self.core)
        for type_name in ("13AppController", "20DictationCoordinator", "11AppSettings", "8TrayItem"):
            self.assertTrue(any(type_name in name for name in names), type_name)

    def test_nothing_of_it_is_defined_again(self):
        core = definitions(self.core)
        for file in (self.program, self.library):
            own = definitions(file)
            self.assertTrue(own, file)
            self.assertEqual(own & core, set(), file)


if __name__ == "__main__":
    OneCore.core, OneCore.program, OneCore.library = sys.argv[1:4]
    unittest.main(argv=sys.argv[:1])
