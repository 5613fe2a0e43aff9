"""What is shipped must be built with the hardening that the compiler and the linker offer: hardening_test.py PROGRAM CORE WINDOWS."""

import platform
import subprocess
import sys
import unittest


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


class Hardening(unittest.TestCase):
    program = core = library = None

    def setUp(self):
        self.files = (self.program, self.core, self.library)

    def test_the_program_has_no_fixed_place_in_memory(self):
        self.assertRegex(output_of("readelf", "-hW", self.program), r"Type:\s+DYN")
        self.assertRegex(output_of("readelf", "-dW", self.program), r"\(FLAGS_1\).*\bPIE\b")

    def test_what_the_loader_has_resolved_is_read_only(self):
        for file in self.files:
            self.assertIn("GNU_RELRO", output_of("readelf", "-lW", file), file)
            self.assertRegex(output_of("readelf", "-dW", file), r"\(FLAGS_1\).*\bNOW\b", file)

    def test_the_stack_cannot_be_executed(self):
        for file in self.files:
            self.assertRegex(output_of("readelf", "-lW", file), r"GNU_STACK .* RW ", file)

    def test_the_stack_is_guarded(self):
        for file in self.files:
            self.assertIn("__stack_chk_fail", output_of("nm", "-D", "--undefined-only", file), file)

    def test_the_functions_of_the_c_library_check_sizes(self):
        # The others need not call one of them.
        self.assertRegex(output_of("nm", "-D", "--undefined-only", self.core), r" U __\w+_chk@")

    @unittest.skipUnless(platform.machine() == "x86_64", "another processor has other means")
    def test_jumps_may_only_land_where_functions_begin(self):
        for file, function in ((self.program, "main"), (self.library, "kestrovaMakeWindows")):
            code = output_of("objdump", "-d", "--no-show-raw-insn", f"--disassemble={function}", file)
            self.assertRegex(code, rf"<{function}>:\n\s+\w+:\s+endbr64", file)


if __name__ == "__main__":
    Hardening.program, Hardening.core, Hardening.library = sys.argv[1:4]
    unittest.main(argv=sys.argv[:1])
