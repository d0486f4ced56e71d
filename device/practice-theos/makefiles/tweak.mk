# One or more tweaks: TWEAK_NAME names them, NAME_FILES holds the sources of each.
ifeq ($(_THEOS_PRACTICE_LOADED),)
$(error include $$(THEOS)/makefiles/common.mk before tweak.mk)
endif

_THEOS_PRACTICE_TWEAKS += $(strip $(TWEAK_NAME))

# $(1): a tweak, $(2): one of its sources. What was copied before and has not changed is not copied again.
define _theos_practice_source
_practice-all:: .theos/obj/$(1)/$(2)
.theos/obj/$(1)/$(2): $(2)
	@$$(_THEOS_PRACTICE_BIN)/say step "Copying $(2)…"
	@$$(_THEOS_PRACTICE_BIN)/check-syntax $(2)
	@mkdir -p $$(dir $$@) && cp $(2) $$@
endef

define _theos_practice_tweak
before-all::
	@$$(_THEOS_PRACTICE_BIN)/say target "Making all for tweak $(1)…"
	@$$(_THEOS_PRACTICE_BIN)/say notice "This is the practice Theos: it packages the sources and compiles nothing."
	@$$(_THEOS_PRACTICE_BIN)/check-sources $(1) $$($(1)_FILES)
$$(foreach source,$$($(1)_FILES),$$(eval $$(call _theos_practice_source,$(1),$$(source))))
endef

$(foreach tweak,$(strip $(TWEAK_NAME)),$(eval $(call _theos_practice_tweak,$(tweak))))
