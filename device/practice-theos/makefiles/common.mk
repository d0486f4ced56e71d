# Practice Theos: stands in where no Theos is installed, for the same project Makefile.
# It packages a project's sources and compiles nothing.
ifeq ($(_THEOS_PRACTICE_LOADED),)
_THEOS_PRACTICE_LOADED := 1

override THEOS := $(abspath $(dir $(lastword $(MAKEFILE_LIST)))/..)
export THEOS
THEOS_MAKE_PATH := $(THEOS)/makefiles
THEOS_PROJECT_DIR := $(CURDIR)
_THEOS_PRACTICE_BIN := $(THEOS)/bin

export COLOR ?= 1
MAKEFLAGS += --no-print-directory

ifneq ($(words $(THEOS_PROJECT_DIR)),1)
$(shell $(_THEOS_PRACTICE_BIN)/say error "The project's path holds blanks, with which Theos cannot build: $(THEOS_PROJECT_DIR)" >&2)
$(error stopped)
endif

.DEFAULT_GOAL := all
.PHONY: all clean package install before-all after-all before-package after-package before-install after-install

# Projects add their own steps with double-colon rules.
all:: before-all _practice-all after-all
before-all after-all before-package after-package before-install after-install::
	@:
_practice-all::
	@:

package:: all before-package _practice-package after-package
install:: before-install _practice-install

_practice-package:
	@$(_THEOS_PRACTICE_BIN)/package $(_THEOS_PRACTICE_TWEAKS)

_practice-install:
	@$(_THEOS_PRACTICE_BIN)/say error "There is no device to install to: this is the practice Theos."; exit 1

clean::
	@$(_THEOS_PRACTICE_BIN)/say target "Cleaning…"
	@rm -rf .theos/obj .theos/_

endif
