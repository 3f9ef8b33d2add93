# make run   - install what is missing, build, start Vantor Planner
# make test  - install what is missing, build, run every test headless
BUILD      ?= build
BUILD_TYPE ?= RelWithDebInfo
WERROR     ?= OFF
SANITIZE   ?= OFF
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)

# Debian 12 packages the build, the tests and the benchmarks need; CI's
# formatting check needs clang-format too. Liberation Serif stands in for
# Times New Roman on paper with the same metrics; the tests read printed
# PDFs back with pdftotext (poppler-utils).
PACKAGES = cmake make g++ pkgconf qt6-base-dev qt6-base-dev-tools libgl-dev \
           libsqlite3-dev libcsv-dev libbenchmark-dev fonts-liberation2 \
           poppler-utils
CHECK_PACKAGES = clang-format
# make package builds the Debian package with dpkg-shlibdeps; make
# package-check also validates its desktop entry, file type and catalogue entry.
PACKAGE_TOOLS = dpkg-dev file desktop-file-utils appstream shared-mime-info
PREFIX ?= /usr/local
SOURCES = $(shell git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' \
            'tools/*.cpp' 'bench/*.cpp' 'bench/*.h' 2>/dev/null)

.PHONY: all deps check-deps install-packages configure build run test bench format format-check clean \
        install package package-check

all: build

deps:
	@$(MAKE) --no-print-directory install-packages WANTED="$(PACKAGES)"

check-deps:
	@$(MAKE) --no-print-directory install-packages WANTED="$(CHECK_PACKAGES)"

install-packages:
	@missing=""; \
	for p in $(WANTED); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  if [ "$$(id -u)" = 0 ]; then SUDO=""; \
	  elif command -v sudo >/dev/null 2>&1 && sudo -n true 2>/dev/null; then SUDO="sudo"; \
	  else \
	    echo "Missing packages:$$missing"; \
	    echo "Install them with:"; \
	    echo "  sudo apt-get update && sudo apt-get install -y$$missing"; \
	    exit 1; \
	  fi; \
	  echo "Installing:$$missing"; \
	  $$SUDO apt-get update -qq && \
	  DEBIAN_FRONTEND=noninteractive $$SUDO apt-get install -y -qq $$missing; \
	fi

configure: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) \
	  -DVANTOR_WERROR=$(WERROR) -DVANTOR_SANITIZE=$(SANITIZE)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/bin/vantor-planner

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

package: build
	@$(MAKE) --no-print-directory install-packages WANTED="$(PACKAGE_TOOLS)"
	cd $(BUILD) && cpack -G DEB

package-check: package
	tests/package/check-package.sh $(BUILD)

bench: build
	@status=0; for b in $(BUILD)/bench/bench_*; do \
	    if [ -f "$$b" ] && [ -x "$$b" ]; then \
	        "$$b" || { echo "$$b failed"; status=1; }; \
	    fi; \
	done; exit $$status

format: check-deps
	clang-format -i $(SOURCES)

format-check: check-deps
	clang-format --dry-run --Werror $(SOURCES)

clean:
	rm -rf $(BUILD)
