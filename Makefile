# Two commands do all the set-up: `make run` builds the engine and starts it at its console,
# `make test` builds everything and runs every test.
JOBS ?= $(shell nproc)
RELEASE := build/release
SANITIZE := build/sanitize
TSAN := build/tsan

.PHONY: run test build sanitize fuzz tsan bench clean

build:
	cmake -S . -B $(RELEASE) -DCMAKE_BUILD_TYPE=Release >/dev/null
	cmake --build $(RELEASE) -j $(JOBS)

run: build
	./$(RELEASE)/morvane

test: build
	cd $(RELEASE) && ctest --output-on-failure -j $(JOBS)

# Unit and end-to-end tests under the address and undefined-behaviour sanitizers.
sanitize:
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

bench: build
	./$(RELEASE)/bench/morvane_bench

clean:
	rm -rf build
