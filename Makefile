# Tanselo: `make run` sets up, builds and starts the editor; `make test` sets up,
# builds and runs every test headless. Both install what is missing (Debian 12).

.PHONY: run test build bench package effects-doc screenshots setup clean

run: build
	./build/tanselo

test:
	scripts/test.sh

build: setup
	cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
	cmake --build build -j$$(nproc)

bench: build
	./build/bench/tanselo_bench

# A Debian package of the editor: build/tanselo_<version>_amd64.deb.
package: build
	cd build && cpack -G DEB

# Rewrites docs/effects.md from the effect catalogue's declarations.
effects-doc: build
	cmake --build build --target effects-doc

# Takes every picture the README shows again, from the editor as it is now.
screenshots: build
	scripts/screenshots.sh

setup:
	scripts/setup.sh

clean:
	rm -rf build
