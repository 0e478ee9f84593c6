# Two commands do all the set-up: `make run` builds the engine and starts it at its console,
# `make test` builds everything and runs every test.
JOBS ?= $(shell nproc)
RELEASE := build/release
SANITIZE := build/sanitize
TSAN := build/tsan

.PHONY: run test build sanitize fuzz tsan bench clean test-packages bench-packages

# Debian packages that the tests and the benchmarks need beyond the compiler and CMake.
TEST_PACKAGES := libgtest-dev
BENCH_PACKAGES := libbenchmark-dev

# Installs the Debian packages named when they are missing: at once when run as root, saying
# what it installs; otherwise it stops with the command to run. Does nothing off Debian.
define ensure_packages
	@command -v dpkg-query >/dev/null || exit 0; \
	missing=$$(for p in $(1); do \
	    dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q 'ok installed' || echo $$p; done); \
	[ -z "$$missing" ] && exit 0; \
	if [ "$$(id -u)" != 0 ]; then \
	    echo "Missing Debian packages; install them with: sudo apt-get install -y" $$missing; exit 1; fi; \
	echo "Installing missing Debian packages:" $$missing; \
	apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing >/dev/null
endef

test-packages:
	$(call ensure_packages,$(TEST_PACKAGES))

bench-packages:
	$(call ensure_packages,$(BENCH_PACKAGES))

build:
	cmake -S . -B $(RELEASE) -DCMAKE_BUILD_TYPE=Release >/dev/null
	cmake --build $(RELEASE) -j $(JOBS)

run: build
	./$(RELEASE)/morvane

test: test-packages build
	cd $(RELEASE) && ctest --output-on-failure -j $(JOBS)

# Unit and end-to-end tests under the address and undefined-behaviour sanitizers.
sanitize: test-packages
	cmake -S . -B $(SANITIZE) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMORVANE_SANITIZE=address,undefined >/dev/null
	cmake --build $(SANITIZE) -j $(JOBS)
	cd $(SANITIZE) && ctest --output-on-failure -j $(JOBS)

# A long seeded fuzz run of the command loop and the FEN parser under the sanitizers.
fuzz: sanitize
	./$(SANITIZE)/tests/command_fuzz 100000

# A multi-threaded search under the thread sanitizer.
tsan:
	cmake -S . -B $(TSAN) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMORVANE_SANITIZE=thread -DBUILD_TESTING=OFF >/dev/null
	cmake --build $(TSAN) -j $(JOBS) --target morvane
	tests/tsan_search.sh $(TSAN)/morvane

bench: bench-packages build
	./$(RELEASE)/bench/morvane_bench

clean:
	rm -rf build
