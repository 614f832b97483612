// The engines, each in a source of its own; which of them are there was found when the benchmark was built.
#pragma once

#include "expressions/engine.h"

Engine own_engine();
Engine re2_engine();
Engine pcre2_compiled_engine();
Engine pcre2_interpreted_engine();
Engine standard_engine();
