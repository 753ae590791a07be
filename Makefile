# Tanselo: `make run` sets up, builds and starts the editor; `make test` sets up,
# builds and runs every test headless. Both install what is missing (Debian 12).

.PHONY: run test build bench setup clean

run: build
	./build/tanselo

test:
	scripts/test.sh

build: setup
	cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
	cmake --build build -j$$(nproc)

bench: build
	./build/bench/tanselo_bench

setup:
	scripts/setup.sh

clean:
	rm -rf build
