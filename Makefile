# The front door. Each target installs what it needs first; see scripts/setup.
PRESET ?= release
BUILD = build/$(PRESET)

.PHONY: run test bench format format-check

run:
	scripts/setup run
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) --target orlune_app
	scripts/run $(BUILD)

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

format:
	scripts/setup format
	scripts/format -i

format-check:
	scripts/setup format
	scripts/format --dry-run -Werror
