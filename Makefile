# The front door. Each target installs what it needs first; see scripts/setup.
PRESET ?= release
SECONDS ?= 60
BUILD = build/$(PRESET)

.PHONY: app run pictures test sanitize fuzz soak lint bench package package-test format format-check

app:
	scripts/setup run
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) --target orlune_app

run: app
	scripts/run $(BUILD)

pictures: app
	cmake --preset $(PRESET) -DORLUNE_TESTS=ON
	cmake --build --preset $(PRESET) --target orlune-testcamera
	scripts/pictures $(BUILD)

test:
	scripts/setup test
	cmake --preset $(PRESET) -DORLUNE_TESTS=ON -DORLUNE_BENCH=OFF
	cmake --build --preset $(PRESET)
	ctest --preset $(PRESET)

sanitize:
	scripts/setup test
	cmake --preset asan -DORLUNE_TESTS=ON
	cmake --build --preset asan
	ctest --preset asan
	cmake --preset tsan -DORLUNE_TESTS=ON
	cmake --build --preset tsan
	ctest --preset tsan

fuzz:
	scripts/setup fuzz
	cmake --preset fuzz
	cmake --build --preset fuzz
	scripts/fuzz build/fuzz $(SECONDS)

soak:
	scripts/setup test
	cmake --preset $(PRESET) -DORLUNE_TESTS=ON
	cmake --build --preset $(PRESET) --target soak
	QT_QPA_PLATFORM=offscreen $(BUILD)/bin/soak $(SOAK)

lint: app
	scripts/setup lint
	scripts/lint $(BUILD)

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
