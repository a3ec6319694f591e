# Thin fronts; the presets and scripts do the work.
.PHONY: help demo test clang stress lint format tidy coverage package bench fuzz docs mutation

help:
	@echo "make demo      set up, build and replay a recorded receiver; ends with a summary and a picture"
	@echo "make test      set up, build and run all tests: Linux with GCC and clang, sanitizers, Windows under Wine"
	@echo "make clang     all tests built with clang, unoptimised and at -O3"
	@echo "make package   archives for Linux and Windows in dist/"
	@echo "make docs      interface reference in build/docs/html"
	@echo "make bench     speed beside the peers, instructions, and how cost grows, in docs/PERFORMANCE.md"
	@echo "                (CHECK=1: ends with an error where a figure is over its limit)"
	@echo "make fuzz      fuzz every reader and rule, 10 minutes a target (SECONDS=n for another time)"
	@echo "make stress    the reader/writer lock under many threads, some minutes"
	@echo "make mutation  changes the sources in small ways and counts the changes that the unit tests notice"
	@echo "                (RECHECK=1: makes the accepted changes and compares what the library computes with and without)"
	@echo "make lint      format check and clang-tidy"
	@echo "make tidy      clang-tidy over the sources"
	@echo "make format    format every C++ file"
	@echo "make coverage  tests with coverage, report in build/coverage/report"

demo:
	@tools/demo.sh

test:
	@tools/run_tests.sh

clang:
	@tools/run_tests.sh linux-clang linux-clang-release

lint:
	@tools/install_packages.sh lint
	@tools/check_format.sh
	@tools/run_tidy.sh

format:
	@tools/install_packages.sh format
	@tools/check_format.sh --fix

tidy:
	@tools/install_packages.sh lint
	@tools/run_tidy.sh

coverage:
	@tools/install_packages.sh coverage
	@tools/run_coverage.sh

package:
	@tools/install_packages.sh package
	@tools/make_packages.sh

bench:
	@tools/install_packages.sh bench
	@tools/run_benchmarks.sh $(if $(filter-out 0,$(CHECK)),--check)

SECONDS ?= 600
fuzz:
	@tools/install_packages.sh fuzz
	@tools/run_fuzz.sh $(SECONDS)

docs:
	@tools/install_packages.sh docs
	@tools/build_docs.sh

stress:
	@tools/install_packages.sh stress
	@tools/run_stress.sh

mutation:
	@tools/install_packages.sh mutation
	@tools/mutation.py $(if $(RECHECK),--recheck,--plan tests/mutation/plan.tsv) --accepted tests/mutation/accepted.tsv
