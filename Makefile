# The commands for users and developers. Every target sets up what it needs; CMake and the scripts in tools/ do the work.

.DEFAULT_GOAL := build
# The NT interface that programs run on: wine10, or wine8, which reports Windows 7.
export ORV_PLATFORM := $(or $(PLATFORM),wine10)
.PHONY: build platform demo test lint audit bench fuzz coverage docs install package reference clean help

help:
	@echo 'make build    orvsys.dll and orvtool.exe, in build/release/bin'
	@echo 'make demo     the main job, on a real NT interface'
	@echo 'make test     builds and runs every test (PLATFORM=wine8: on an older NT interface)'
	@echo 'make lint     formatting and static analysis'
	@echo 'make audit    security fixes that the libraries inside lack (asks the mirrors)'
	@echo 'make bench    speed beside a peer in the same run, kept in docs/benchmarks (BENCH=PART: only such rows)'
	@echo 'make fuzz     each fuzz target for a minute (FUZZ_SECONDS)'
	@echo 'make coverage what the tests on the host reach, as a summary and as HTML'
	@echo 'make docs     the reference documentation, as HTML in build/docs/html'
	@echo 'make install  DLL, import library, headers, pages, CMake package (PREFIX, DESTDIR)'
	@echo 'make package  the same as a zip, and a NuGet package, in build/release/package'
	@echo 'make reference  docs/orvtool.md, out of what orvtool says'
	@echo 'make clean    removes build/; the cache with the test platform stays'

build:
	@tools/build.sh release

demo: platform build
	@tools/demo.sh

# The first prerequisite of targets that run programs, so that a missing Wine is reported before anything is built.
platform:
	@tools/setup.sh
	@tools/get_wine.sh >/dev/null

test: platform
	@tools/setup.sh docs
	@tools/build.sh release debug host
	@tools/test.sh release debug host

lint:
	@tools/setup.sh lint
	@tools/build.sh release
	@tools/lint.sh

audit:
	@tools/audit.sh

bench: build
	@tools/bench.sh $(BENCH)

fuzz:
	@tools/build.sh host
	@tools/fuzz.sh

coverage:
	@tools/build.sh coverage
	@tools/coverage.sh

docs:
	@tools/docs.sh

# CMake itself puts DESTDIR before the prefix.
install: export DESTDIR := $(DESTDIR)
install: export ORV_PREFIX := $(or $(PREFIX),/usr/local/orvsys)
install: build
	@cmake --install build/release --prefix "$$ORV_PREFIX"

package: build
	@cd build/release && cpack --config CPackConfig.cmake >cpack.log || { tail -n 20 cpack.log; exit 1; }
	@tools/package_nuget.sh build/release build/release/package
	@ls build/release/package/*.zip build/release/package/*.nupkg

reference: build
	@tools/orvtool_reference.sh build/release/bin/orvtool.exe >build/orvtool.md
	@mv build/orvtool.md docs/orvtool.md

clean:
	@tools/clean.sh
