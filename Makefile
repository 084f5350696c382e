# The front door. Each target installs what it needs first; see scripts/setup.
PRESET ?= release
BUILD = build/$(PRESET)

.PHONY: app run pictures test bench package package-test format format-check

app:
	scripts/setup run
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) --target orlune_app

run: app
	scripts/run $(BUILD)

pictures: app
	scripts/pictures $(BUILD)

test:
	scripts/setup test
	cmake --preset $(PRESET) -DORLUNE_TESTS=ON -DORLUNE_BENCH=OFF
	cmake --build --preset $(PRESET)
	ctest --preset $(PRESET)

bench:
	scripts/setup bench
	cmake --preset release -DORLUNE_BENCH=ON
	cmake --build --preset release --target bench_all
	scripts/bench build/release

package:
	scripts/setup package
	cmake --preset package
	cmake --build --preset package
	rm -f build/package/*.deb
	cpack --preset package

package-test: package
	scripts/package-test build/package

format:
	scripts/setup format
	scripts/format -i

format-check:
	scripts/setup format
	scripts/format --dry-run -Werror
