#!/usr/bin/env python3
"""Runs tools/install_packages.sh as another user, with stand-ins for dpkg, apt and sudo."""
import re
import shutil
import unittest

from script_runner import ROOT, TOOLS, ScriptTest

BASICS = ("sh", "awk", "sed", "env", "cat", "tee", "chmod", "rm", "grep")


class InstallPackages(ScriptTest):
    def setUp(self):
        super().setUp()
        for name in BASICS:
            (self.programs / name).symlink_to(shutil.which(name))
        self.write_program("id", "echo 1000\n")
        self.write_program("apt-get", f'echo "apt-get $*" >> "{self.folder}/log"\n[ ! -e "{self.folder}/broken-$2" ]\n')
        self.write_program("dpkg-query", f'shift 3\nfor p; do ! grep -qx "$p" "{self.folder}/installed" || echo "$p installed"; done\n')
        self.set_installed()
        self.policy = self.folder / "policy-rc.d"
        text = (TOOLS / "install_packages.sh").read_text()
        self.script = self.write("install_packages.sh", text.replace("/usr/sbin/policy-rc.d", str(self.policy)), 0o755)

    def allow_sudo(self, status=0):
        self.write_program("sudo", f'[ {status} -eq 0 ] || exit {status}\necho "sudo $*" >> "{self.folder}/log"\n'
                                   'case $1 in\n  tee | chmod | rm) "$@" > /dev/null ;;\n  env) shift; while case $1 in *=*) ;; *) false ;; esac; '
                                   'do shift; done; [ "$1" != apt-get ] || "$@" ;;\nesac\n')

    def set_installed(self, *packages):
        self.write("installed", "".join(p + "\n" for p in packages))

    def install(self, *arguments):
        (self.folder / "log").unlink(missing_ok=True)
        result = self.run_script(self.script, *arguments, PATH=str(self.programs))
        log = self.folder / "log"
        return result, log.read_text().splitlines() if log.exists() else []

    def names(self, *groups):
        return self.run_script(self.script, "--list", *groups).stdout.split()

    def test_nothing_to_do_needs_no_rights(self):
        self.set_installed(*self.names("demo"))
        result, log = self.install("demo")
        self.assertEqual((0, "", "", []), (result.returncode, result.stdout, result.stderr, log))

    def test_a_program_in_the_path_need_not_be_a_package(self):
        self.set_installed(*(set(self.names("demo")) - {"cmake", "ninja-build", "gnuplot-nox"}))
        for name in ("cmake", "ninja", "gnuplot"):
            self.assertEqual(1, self.install("demo")[0].returncode)
            self.write_program(name, "")
        self.assertEqual(0, self.install("demo")[0].returncode)

    def test_who_may_not_install_gets_a_line_to_copy(self):
        self.set_installed(*(set(self.names("demo")) - {"tzdata", "libcli11-dev"}))
        for has_sudo in (False, True):
            with self.subTest(has_sudo=has_sudo):
                if has_sudo:
                    self.allow_sudo(status=1)
                result, log = self.install("demo")
                self.assertEqual((1, []), (result.returncode, log))
                self.assertEqual("sudo apt-get install --no-install-recommends libcli11-dev tzdata",
                                 result.stderr.splitlines()[-1])

    def test_only_what_is_missing_is_installed(self):
        self.allow_sudo()
        self.set_installed(*(set(self.names("docs")) - {"doxygen"}))
        result, log = self.install("docs")
        self.assertEqual((0, "Installing: doxygen\n"), (result.returncode, result.stdout))
        self.assertEqual(["apt-get -q update", "apt-get -q install -y --no-install-recommends doxygen"],
                         [line for line in log if line.startswith("apt-get")])
        self.assertNotIn("deb-systemd-helper", "\n".join(log))

    def test_no_service_is_started_or_enabled(self):
        self.allow_sudo()
        self.set_installed(*(set(self.names("test")) - {"gpsd"}))
        # apt-get sees the policy while it installs.
        self.write_program("apt-get", f'[ "$2" != install ] || {{ "{self.policy}"; echo "policy $?" >> "{self.folder}/log"; }}\n')
        result, log = self.install("test")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertIn("policy 101", log)
        self.assertEqual("sudo env DPKG_MAINTSCRIPT_PACKAGE=gpsd deb-systemd-helper disable gpsd.socket gpsd.service", log[-2])
        self.assertFalse(self.policy.exists())

    def test_a_policy_of_the_machine_stays(self):
        self.allow_sudo()
        self.write("policy-rc.d", "#!/bin/sh\nexit 0\n", 0o755)
        self.assertEqual(0, self.install("docs")[0].returncode)
        self.assertEqual("#!/bin/sh\nexit 0\n", self.policy.read_text())

    def test_an_installation_that_fails_leaves_no_policy_behind(self):
        self.allow_sudo()
        self.write("broken-install", "")
        result, log = self.install("docs")
        self.assertNotEqual(0, result.returncode)
        self.assertIn(f"sudo tee {self.policy}", log)
        self.assertFalse(self.policy.exists())

    def test_another_system_is_told_and_not_refused(self):
        (self.programs / "dpkg-query").unlink()
        result, log = self.install("docs")
        self.assertEqual((0, []), (result.returncode, log))
        self.assertIn("this is no Debian", result.stderr)
        self.assertIn("doxygen", result.stderr)

    def test_groups(self):
        demo = set(self.names("demo"))
        self.assertFalse([p for p in demo if re.search("wine|mingw|clang|gpsd|libgps|googletest|python", p)], demo)
        self.assertEqual(set(self.names("demo", "docs")), demo | set(self.names("docs")))
        self.assertEqual(self.names(), self.names("all"))
        self.assertEqual(len(self.names()), len(set(self.names())))
        for group in ("demo", "build", "test", "lint", "format", "fuzz", "bench", "docs", "coverage", "package", "mutation",
                      "stress"):
            self.assertTrue(set(self.names(group)) <= set(self.names("all")), group)
        result, log = self.install("bogus")
        self.assertEqual((1, "install_packages: no group 'bogus'\n", []), (result.returncode, result.stderr, log))

    def test_every_caller_names_a_group_that_exists(self):
        callers = [ROOT / "Makefile", ROOT / ".ci" / "run", *TOOLS.glob("*.sh")]
        groups = {g for path in callers for g in re.findall(r"tools/install_packages\.sh ([a-z]+)", path.read_text())}
        self.assertLessEqual({"demo", "test", "bench", "docs"}, groups)
        for group in groups:
            self.assertNotEqual([], self.names(group), group)


if __name__ == "__main__":
    unittest.main()
