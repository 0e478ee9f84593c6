# Two commands do all the set-up: `make run` builds the engine and starts it at its console,
# `make test` builds everything and runs every test.
JOBS ?= $(shell nproc)
RELEASE := build/release
SANITIZE := build/sanitize
TSAN := build/tsan

.PHONY: run test build sanitize tsan bench clean

build:
	cmake -S . -B $(RELEASE) -DCMAKE_BUILD_TYPE=Release >/dev/null
	cmake --build $(RELEASE) -j $(JOBS)

run: build
	./$(RELEASE)/morvane

test: build
	cd $(RELEASE) && ctest --output-on-failure -j $(JOBS)

# Unit and end-to-end tests under the address and undefined-behaviour sanitizers.
sanitize:
	cmake -S . -B $(SANITIZE) -DCMAKE_BUILD_TYPE=Debug -DMORVANE_SANITIZE=address,undefined >/dev/null
	cmake --build $(SANITIZE) -j $(JOBS)
	cd $(SANITIZE) && ctest --output-on-failure -j $(JOBS)

bench: build
	./$(RELEASE)/bench/morvane_bench

clean:
	rm -rf build
